// The exit statuses of devcfg.
#pragma once

namespace devcfg {

inline constexpr int kExitFailed = 1;      // refused or failed; the reason is on standard error
inline constexpr int kExitWrongUsage = 2;  // the command line is not understood

inline constexpr char kExitStatusHelp[] =
    "Exit status: 0 done, 1 refused or failed (the reason is on standard error), 2 wrong usage.";

}  // namespace devcfg
