#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
    // Code-page text follows the locale, as in the programs; UTF-8 makes it predictable.
    if (!std::setlocale(LC_ALL, "C.UTF-8")) std::setlocale(LC_ALL, "");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
