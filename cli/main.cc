#include "orvaneip.h"
int main() { return 0; }
