#include "mctplink.h"
