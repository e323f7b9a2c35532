// The command runner: runs a program and waits until it has ended.
//
// What the library relies on:
//  - `path` is the program's file, and the arguments after it are `const char*`, ended by a null
//    pointer. Each reaches the program as one argument, unchanged, whatever its bytes: no shell
//    sees them. The three numbers are 0.
//  - The call returns when the program has ended: its status word as waitpid reports it. The low
//    seven bits are 0 when it exited, and bits 8 to 15 are its exit code then; else they are the
//    number of the signal that ended it. -1 when the program could not be run.
//  - Any number of threads may call at once; each waits for its own program only.
//
// The embedded platform starts the program at `path` itself (no search in PATH; a script needs its
// "#!" line), with `path` as argument 0 and the environment of this process. It gets standard
// input, output and error of this process and no other descriptor, no blocked signal, and the
// default action for every signal. A wait that a signal interrupts goes on. -1 also when the
// program's end cannot be waited for, since this process ignores SIGCHLD or another part of it took
// the status.
#pragma once

#include "platform/export.h"

extern "C" {

ORVANEIP_API int vorn_exec(int zero_1, int zero_2, int zero_3, const char* path, ...)
    __attribute__((sentinel));

}  // extern "C"
