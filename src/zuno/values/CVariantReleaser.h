#pragma once

#include <zuno/IVariant.h>
#include <zuno/P.h>

namespace zuno {

// Releases the children of arrays and maps without recursion, so that trees of any depth
// can be destroyed on a small stack. A container's destructor hands each child to a
// releaser: scalars are released at once, containers are queued on the thread. The
// outermost releaser on a thread drains the queue when it goes out of scope; releasing a
// queued container runs its destructor, whose own releaser queues that container's
// children instead of descending into them.
class CVariantReleaser {
public:
    CVariantReleaser();
    ~CVariantReleaser();
    CVariantReleaser(const CVariantReleaser&) = delete;
    CVariantReleaser& operator=(const CVariantReleaser&) = delete;

    void release(P<IVariant>& value);

private:
    bool m_outermost;
};

} // namespace zuno
