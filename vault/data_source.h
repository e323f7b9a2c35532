// The records and classes of the vault database, under the path by which programs know them.
#pragma once

#include "platform/vault_database.h"
