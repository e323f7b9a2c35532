// The mark of everything that programs may link to; all other symbols of the libraries are hidden.
#pragma once

#define ORVANEIP_API __attribute__((visibility("default")))
