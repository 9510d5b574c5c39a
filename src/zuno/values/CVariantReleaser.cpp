#include "values/CVariantReleaser.h"

namespace zuno {

namespace {

// The outermost releaser alive on the thread, null when there is none.
thread_local CVariantReleaser* t_outermost = nullptr;

} // namespace

CVariantReleaser::CVariantReleaser() : m_outermost(t_outermost ? t_outermost : this) {
    t_outermost = m_outermost;
}

CVariantReleaser::~CVariantReleaser() {
    if (m_outermost != this) return;
    while (!m_pending.empty()) {
        P<IVariant> next = std::move(m_pending.back());
        m_pending.pop_back();
        next.reset();  // may queue more
    }
    t_outermost = nullptr;
}

void CVariantReleaser::release(P<IVariant>& value) {
    if (!value) return;
    const IVariant::Kind kind = value->getKind();
    if (kind == IVariant::Kind::Array || kind == IVariant::Kind::Map) {
        m_outermost->m_pending.push_back(std::move(value));
    } else {
        value.reset();
    }
}

} // namespace zuno
