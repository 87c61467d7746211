#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "PindleConversion/lexicons/compiler/LexiconFile.h"
#include "PindleConversion/lexicons/compiler/TableBuilder.h"

namespace {

using namespace pindle::conversion;

LexiconFile load(const std::string &path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in)
        throw std::runtime_error(path + ": cannot be read");
    LexiconFile lexicon = readLexicon(text.str(), path);
    std::string missing;
    for (const std::string &table : missingTables(lexicon))
        missing += "\n  " + table;
    if (!missing.empty())
        throw std::runtime_error(path + ": lacks" + missing);
    return lexicon;
}

} // namespace

/// usage: lexicon-compiler OUTPUT.cpp SHARED LEXICON...
int main(int argc, char *argv[]) {
    try {
        std::vector<LexiconFile> lexicons;
        for (int i = 2; i < argc; ++i)
            lexicons.push_back(load(argv[i]));
        std::ofstream out(argv[1]);
        out << TableBuilder(std::move(lexicons)).source();
        out.close();
        return out ? 0 : 1;
    } catch (const std::exception &error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
