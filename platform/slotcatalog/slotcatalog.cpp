#include "slotcatalog.h"
