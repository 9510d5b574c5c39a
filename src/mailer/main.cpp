#include "CMailer.h"
#include "mailerPlatform.h"

#include <vector>

int main(int argc, char** argv) {
    mailer::prepareLocale();
    std::vector<zuno::String> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i], -1);
    return mailer::CMailer::run(arguments);
}
