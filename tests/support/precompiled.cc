// Owns the precompiled header: an executable, since its code is compiled as that of the tests is.
int main() {}
