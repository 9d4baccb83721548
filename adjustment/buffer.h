// Room for what kernels compute with.
#ifndef FIELDSCAN_ADJUSTMENT_BUFFER_H
#define FIELDSCAN_ADJUSTMENT_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace fieldscan {

// Aligned to cache lines; not initialized.
class Buffer {
public:
    explicit Buffer(long long size)
        : m_storage(new double[static_cast<std::size_t>(size) + kLine]), m_data(m_storage.get()) {
        while (reinterpret_cast<std::uintptr_t>(m_data) % (kLine * sizeof(double)) != 0)
            ++m_data;
    }
    double* data() { return m_data; }

private:
    static constexpr std::size_t kLine = 8;
    std::unique_ptr<double[]> m_storage;
    double* m_data;
};

}  // namespace fieldscan

#endif
