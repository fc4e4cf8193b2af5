#include "hubcast.h"
