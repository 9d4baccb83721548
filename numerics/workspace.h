// Memory for intermediate results of kernels.
#ifndef FIELDSCAN_NUMERICS_WORKSPACE_H
#define FIELDSCAN_NUMERICS_WORKSPACE_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace fieldscan {

// Doubles, aligned to a cache line of 8; not initialized. (Aligned by hand: with aligned `new` refining 8 x 4
// takes a tenth longer.)
class Workspace {
public:
    explicit Workspace(long long size) : m_room(new double[static_cast<std::size_t>(size) + 7]) {}
    double* data() const {
        const auto index = reinterpret_cast<std::uintptr_t>(m_room.get()) / sizeof(double);
        return m_room.get() + (8 - index % 8) % 8;
    }

private:
    std::unique_ptr<double[]> m_room;
};

}  // namespace fieldscan

#endif
