// Hooks of the event configuration, for programs that call them: each returns 0, reads and changes
// none of its arguments, and logs nothing. The JSON objects stay the caller's.
#pragma once

#include "platform/export.h"

struct json_object;

ORVANEIP_API int evtcfg_recv_notify_mortals(char*, double, unsigned char*, json_object*,
                                            json_object*);
ORVANEIP_API int evtcfg_recv_notify_access(char*, char*, json_object**, char*, char*, char*, char*,
                                           char*, json_object*, char*);
ORVANEIP_API int evtcfg_remove_event(char*, char*, json_object*);
