// Control of the metadata service through the platform's command runner.
//
// Each runs one command, without a shell, waits until it has ended, and returns its exit status, 0
// to 255. -1 and one log line when the command could not be run or was ended by a signal. Nothing
// is tried again; two calls run two commands side by side.
#pragma once

#include "platform/export.h"

// /etc/init.d/Kmetadatad.sh restart: the whole metadata service.
ORVANEIP_API int devcfg_restart_all();

// /usr/bin/kdevmgmt dev_reload_all: the device manager reads all devices anew.
ORVANEIP_API int devcfg_dev_reload_all();

// /usr/bin/kdevmgmt dev_load ID and dev_unload ID: one device. `device_id` reaches the device
// manager as one argument, unchanged, an empty one too. Null: -1 and a log line, and no command is
// run.
ORVANEIP_API int devcfg_dev_load(char* device_id);
ORVANEIP_API int devcfg_dev_unload(char* device_id);
