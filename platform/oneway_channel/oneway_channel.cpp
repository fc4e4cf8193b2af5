#include "oneway_channel.hpp"
