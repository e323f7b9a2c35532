#include "service/event_hooks.h"

#include "foundation/result_codes.h"

int evtcfg_recv_notify_mortals(char*, double, unsigned char*, json_object*, json_object*) {
  return kDevcfgOk;
}

int evtcfg_recv_notify_access(char*, char*, json_object**, char*, char*, char*, char*, char*,
                              json_object*, char*) {
  return kDevcfgOk;
}

int evtcfg_remove_event(char*, char*, json_object*) { return kDevcfgOk; }
