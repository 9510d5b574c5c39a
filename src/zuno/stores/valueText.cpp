#include "stores/valueText.h"

#include <charconv>
#include <string>

namespace zuno::valueText {

namespace {

template <class T>
String format(T value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return String(buffer, int32_t(result.ptr - buffer));
}

template <class T>
std::optional<T> parse(const String& text) {
    const std::string bytes = text.toStdString();
    const char* begin = bytes.data();
    const char* end = begin + bytes.size();
    if (begin == end || *begin == '+') return std::nullopt;
    T value{};
    const auto result = std::from_chars(begin, end, value);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return value;
}

} // namespace

String fromInt64(int64_t value) {
    return format(value);
}

String fromUInt64(uint64_t value) {
    return format(value);
}

String fromDouble(double value) {
    return format(value);
}

String fromBoolean(bool value) {
    return value ? L"true" : L"false";
}

std::optional<int64_t> toInt64(const String& text) {
    return parse<int64_t>(text);
}

std::optional<uint64_t> toUInt64(const String& text) {
    return parse<uint64_t>(text);
}

std::optional<double> toDouble(const String& text) {
    return parse<double>(text);
}

} // namespace zuno::valueText
