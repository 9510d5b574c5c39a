// zuno-json [--pretty] [--exact] [FILE]
//
// Reads JSON text (UTF-8) from FILE, or from standard input when FILE is "-" or missing,
// and prints it again on standard output, compact or with --pretty, followed by a line
// feed. By default numbers follow the framework's default rules, which lose precision;
// --exact reads and prints every number and string exactly (JsonMode::Exact). Exit
// codes: 0 when the text parses (empty text prints nothing), 1 on a parse error, whose
// message goes to standard error, 2 on a usage or input error.
#include "jsonToolPlatform.h"

#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>

#include <cstdio>
#include <cstring>
#include <string>

using namespace zuno;

namespace {

const char Usage[] =
    "usage: zuno-json [--pretty] [--exact] [FILE]\n"
    "Checks JSON text from FILE (or standard input) and prints it compact, or indented with --pretty.\n"
    "By default numbers follow the framework's default rules, which lose precision (1.000001 prints 1);\n"
    "--exact keeps every number and string exactly.\n";

bool readAll(std::FILE* in, std::string& text) {
    char buffer[65536];
    size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, in)) > 0) text.append(buffer, count);
    return !std::ferror(in);
}

void writeLine(std::FILE* out, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), out);
    std::fputc('\n', out);
}

} // namespace

int main(int argc, char** argv) {
    jsontool::prepareProcess();
    bool pretty = false;
    JsonMode mode = JsonMode::Default;
    const char* path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--pretty") == 0) {
            pretty = true;
        } else if (std::strcmp(argv[i], "--exact") == 0) {
            mode = JsonMode::Exact;
        } else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(Usage, stdout);
            return 0;
        } else if ((argv[i][0] == '-' && argv[i][1] != 0) || path) {
            std::fputs(Usage, stderr);
            return 2;
        } else {
            path = argv[i];
        }
    }

    std::string input;
    const bool fromStdin = !path || std::strcmp(path, "-") == 0;
    std::FILE* in = fromStdin ? stdin : jsontool::openForReading(String(path, -1));
    if (!in) {
        std::fprintf(stderr, "zuno-json: cannot open %s\n", path);
        return 2;
    }
    const bool complete = readAll(in, input);
    if (!fromStdin) std::fclose(in);
    if (!complete) {
        std::fprintf(stderr, "zuno-json: cannot read %s\n", fromStdin ? "standard input" : path);
        return 2;
    }

    try {
        const P<IVariant> root = CJsonParser::parseUTF8(input.data(), input.size(), mode);
        if (root) writeLine(stdout, CJsonPrinter(pretty, mode).print(*root).toStdString());
    } catch (const CJsonParserError& error) {
        writeLine(stderr, error.getMessage().toStdString());
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 2;
}
