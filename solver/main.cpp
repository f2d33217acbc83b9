#include "solver/Program.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
    const char* codePage = std::getenv("VEXA_CODE_PAGE");
    std::ostream* terminal = ::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr;
    return solver::run(arguments, codePage ? codePage : "", std::cout, std::cerr, terminal);
}
