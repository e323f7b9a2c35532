// Controls the metadata service through the platform's command runner.
//
// Each function runs one command without a shell, waits until it has ended, and returns its exit
// status, 0 to 255. It returns -1 and logs one line when the command could not be run or was ended
// by a signal. Nothing is tried again. Two calls at once run two commands at once.
#pragma once

#include "platform/export.h"

// Runs /etc/init.d/Kmetadatad.sh restart: restarts the whole metadata service.
ORVANEIP_API int devcfg_restart_all();

// Runs /usr/bin/kdevmgmt dev_reload_all: the device manager reads all devices again.
ORVANEIP_API int devcfg_dev_reload_all();

// Run /usr/bin/kdevmgmt dev_load ID and dev_unload ID: the device manager loads or unloads one
// device. The device manager receives `device_id` unchanged as one argument, even when it is empty.
// Null is logged and gives -1, and no command is run.
ORVANEIP_API int devcfg_dev_load(char* device_id);
ORVANEIP_API int devcfg_dev_unload(char* device_id);
