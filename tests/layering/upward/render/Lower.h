// Includes a header of a higher layer: the layer check must refuse it.
#include "bridge/Upper.h"
