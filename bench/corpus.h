#pragma once

#include <string>

// The bytes of a file of the shared benchmark data (json-corpora/...). The folder is
// ../shared/data beside the checkout, or $ZUNO_SHARED_DATA_DIR. Raises when it is missing.
const std::string& corpusBytes(const std::string& relativePath);
