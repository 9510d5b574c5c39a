#pragma once

#include <string>

// The kill test of the file stores: a writer process stores two large versions in turn
// until it is killed at a random moment; each platform starts and kills it in its own way.
// Whatever moment it dies at, the store holds the old or the new version, never a mixture
// of both nor a cut-off one.

// Stores the first version, before any writer starts.
void storeFirstVersion(const std::string& uri);
// The writer: stores the two versions in turn, forever.
[[noreturn]] void storeVersionsUntilKilled(const std::string& uri);
// Checks, with gtest assertions, that the store reads back whole as one of the versions.
void expectOneWholeVersion(const std::string& uri);
