#include "values/CVariantReleaser.h"

#include <vector>

namespace zuno {

namespace {

struct ThreadQueue {
    bool draining = false;
    std::vector<P<IVariant>> pending;
};

ThreadQueue& threadQueue() {
    thread_local ThreadQueue queue;
    return queue;
}

} // namespace

CVariantReleaser::CVariantReleaser() {
    ThreadQueue& queue = threadQueue();
    m_outermost = !queue.draining;
    queue.draining = true;
}

CVariantReleaser::~CVariantReleaser() {
    if (!m_outermost) return;
    ThreadQueue& queue = threadQueue();
    while (!queue.pending.empty()) {
        P<IVariant> next = std::move(queue.pending.back());
        queue.pending.pop_back();
        next.reset();  // may queue more
    }
    if (queue.pending.capacity() > 4096) queue.pending.shrink_to_fit();
    queue.draining = false;
}

void CVariantReleaser::release(P<IVariant>& value) {
    if (!value) return;
    const IVariant::Kind kind = value->getKind();
    if (kind == IVariant::Kind::Array || kind == IVariant::Kind::Map) {
        threadQueue().pending.push_back(std::move(value));
    } else {
        value.reset();
    }
}

} // namespace zuno
