// Hooks of the event configuration, for programs that call them. Each returns 0 and logs nothing;
// it neither reads nor changes its arguments. The caller keeps the JSON objects.
#pragma once

#include "platform/export.h"

struct json_object;

ORVANEIP_API int evtcfg_recv_notify_mortals(char*, double, unsigned char*, json_object*,
                                            json_object*);
ORVANEIP_API int evtcfg_recv_notify_access(char*, char*, json_object**, char*, char*, char*, char*,
                                           char*, json_object*, char*);
ORVANEIP_API int evtcfg_remove_event(char*, char*, json_object*);
