// Room for what kernels compute with.
#ifndef FIELDSCAN_NUMERICS_WORKSPACE_H
#define FIELDSCAN_NUMERICS_WORKSPACE_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace fieldscan {

// Doubles, aligned to a cache line of 64 bytes; not initialized.
class Workspace {
public:
    explicit Workspace(long long size)
        : m_storage(new double[static_cast<std::size_t>(size) + kLine]), m_data(m_storage.get()) {
        while (reinterpret_cast<std::uintptr_t>(m_data) % (kLine * sizeof(double)) != 0)
            ++m_data;
    }
    double* data() const { return m_data; }

private:
    static constexpr std::size_t kLine = 8;
    std::unique_ptr<double[]> m_storage;
    double* m_data;
};

}  // namespace fieldscan

#endif
