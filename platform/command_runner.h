// The command runner: runs a program and waits until it has ended.
//
// What the library relies on:
//  - `path` is the path of the program's file. The arguments after it are `const char*`, ended by a
//    null pointer. The program receives each one unchanged as one argument, whatever its bytes: no
//    shell reads them. The three numbers are 0.
//  - The call returns when the program has ended. The result is its status word as waitpid reports
//    it: when the program exited, the low seven bits are 0 and bits 8 to 15 are its exit status;
//    otherwise the low seven bits are the number of the signal that ended it. The result is -1 when
//    the program could not be run.
//  - Any number of threads may call at once; each waits for its own program only.
//
// The embedded platform starts the program at `path` itself: it does not search PATH, and a script
// needs a "#!" line. Argument 0 is `path`, and the environment is that of this process. The program
// inherits standard input, output and error of this process and no other descriptor; it starts with
// no blocked signals and with the default action for every signal. A wait that a signal interrupts
// is continued. The result is also -1 when the end of the program cannot be waited for, because
// this process ignores SIGCHLD or another part of it took the status. Log lines have the tag
// "[cmdrun]".
#pragma once

#include "platform/export.h"

extern "C" {

ORVANEIP_API int vorn_exec(int zero_1, int zero_2, int zero_3, const char* path, ...)
    __attribute__((sentinel));

}  // extern "C"
