// The records and classes of the vault database, under the path that programs include.
#pragma once

#include "platform/vault_database.h"
