#include "value/ErrorReporting.h"

#include <iostream>
#include <stdexcept>
#include <string>

namespace Mero {

bool debugMode = true;

void reportError(std::string_view message)
{
    std::cout << message << std::endl;
    if (debugMode) {
        throw std::runtime_error(std::string(message));
    }
}

}  // namespace Mero
