#include "Harness.h"
