#pragma once

#include <zuno/IVariant.h>
#include <zuno/P.h>

#include <vector>

namespace zuno {

// Releases the children of arrays and maps without recursion, so that trees of any depth
// can be destroyed on a small stack. A container's destructor hands each child to a
// releaser: scalars are released at once, containers are queued on the outermost releaser
// of the thread, which drains its queue when it goes out of scope; releasing a queued
// container runs its destructor, whose own releaser queues that container's children
// instead of descending into them.
//
// The queue lives in the outermost releaser, and the thread keeps only a plain pointer to
// it: nothing thread-local has a destructor, so trees released while the thread or the
// process shuts down (by static or thread-local objects) find no destroyed state.
class CVariantReleaser {
public:
    CVariantReleaser();
    ~CVariantReleaser();
    CVariantReleaser(const CVariantReleaser&) = delete;
    CVariantReleaser& operator=(const CVariantReleaser&) = delete;

    void release(P<IVariant>& value);

private:
    CVariantReleaser* m_outermost;
    std::vector<P<IVariant>> m_pending;  // the outermost releaser's queue
};

} // namespace zuno
