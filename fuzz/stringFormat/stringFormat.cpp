// CStringFormat: a fuzzed format text (UTF-8, up to the first NUL byte), then the pushes,
// each an operation byte and its value's bytes. Malformed formats and mismatched pushes
// must end in the documented exceptions, never in a crash or an unbounded allocation:
// widths and precisions of any size, written or pushed, are the formatter's to bound.
#include <zuno/CException.h>
#include <zuno/CStringFormat.h>

#include <cstdint>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

using namespace zuno;

namespace {

class Input {
public:
    Input(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}
    bool empty() const { return m_at >= m_size; }
    template <class T>
    T take() {
        T value{};
        const size_t n = std::min(sizeof value, m_size - m_at);
        std::memcpy(&value, m_data + m_at, n);
        m_at += n;
        return value;
    }
    std::string takeText() {
        const size_t n = std::min<size_t>(take<uint8_t>(), m_size - m_at);
        std::string text(reinterpret_cast<const char*>(m_data + m_at), n);
        m_at += n;
        return text;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_at = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const uint8_t* end = static_cast<const uint8_t*>(std::memchr(data, 0, size));
    const size_t formatSize = end ? size_t(end - data) : size;
    const std::string format(reinterpret_cast<const char*>(data), formatSize);

    Input pushes(data + formatSize + (end ? 1 : 0), size - formatSize - (end ? 1 : 0));
    try {
        CStringFormat formatter(String::fromUTF8ToWide(format));
        while (!pushes.empty()) {
            const uint8_t operation = pushes.take<uint8_t>();
            switch (operation % 5) {
            case 0:
            case 1: {
                formatter.doInt(pushes.take<int64_t>(), operation % 5 == 0);
                break;
            }
            case 2: formatter.doDouble(pushes.take<double>()); break;
            case 3: formatter.doChar(pushes.take<char32_t>()); break;
            default: formatter.doString(String::fromUTF8(pushes.takeText())); break;
            }
        }
        const String result = formatter.getResult();
        if (!(result == formatter.getResult())) std::abort();
    } catch (const CException&) {
        // The documented errors of a malformed format or a mismatched push.
    }
    return 0;
}
