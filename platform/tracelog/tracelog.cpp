#include "tracelog.h"
