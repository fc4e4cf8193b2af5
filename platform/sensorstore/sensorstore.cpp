#include "sensorstore.hpp"
