// Marks what programs may link to. All other symbols of the libraries are hidden.
#pragma once

#define ORVANEIP_API __attribute__((visibility("default")))
