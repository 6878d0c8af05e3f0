// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileBuffer.h"

#include "platform/linux/files/ControlGroupMemory.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace quillhaven {

namespace {

constexpr size_t hugePageSize = size_t(2) << 20;

/// A value of /proc/meminfo in bytes; 0 when it is not there.
size_t memoryValue(const QByteArray &table, const QByteArray &key)
{
    constexpr size_t bytesPerUnit = 1024;
    const qsizetype start = table.indexOf(key + ':');
    if (start < 0) {
        return 0;
    }
    const qsizetype valueStart = start + key.size() + 1;
    const qsizetype end = table.indexOf("kB", valueStart);
    const size_t units = table.mid(valueStart, end - valueStart).trimmed().toULongLong();
    return units > std::numeric_limits<size_t>::max() / bytesPerUnit ? std::numeric_limits<size_t>::max()
                                                                     : units * bytesPerUnit;
}

} // namespace

FileBuffer::FileBuffer(size_t size) : m_size(size)
{
    if (size == 0) {
        return;
    }
    if (size > std::numeric_limits<size_t>::max() - hugePageSize) {
        throw std::bad_alloc();
    }
    // Room to begin at a huge page: page faults of small pages would cost more than reading and sealing together.
    m_mappedSize = size + hugePageSize;
    m_mapping = mmap(nullptr, m_mappedSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (m_mapping == MAP_FAILED) {
        m_mapping = nullptr;
        throw std::bad_alloc();
    }
    const auto start = reinterpret_cast<uintptr_t>(m_mapping);
    m_data = static_cast<std::byte *>(m_mapping) + (hugePageSize - start % hugePageSize) % hugePageSize;
    if (size >= hugePageSize) {
        madvise(m_data, size, MADV_HUGEPAGE);
    }
}

FileBuffer::~FileBuffer()
{
    if (m_mapping != nullptr) {
        munmap(m_mapping, m_mappedSize);
    }
}

FileBuffer::FileBuffer(FileBuffer &&other) noexcept
    : m_mapping(std::exchange(other.m_mapping, nullptr)),
      m_mappedSize(std::exchange(other.m_mappedSize, 0)),
      m_data(std::exchange(other.m_data, nullptr)),
      m_size(std::exchange(other.m_size, 0)),
      m_releasedSize(std::exchange(other.m_releasedSize, 0))
{
}

FileBuffer &FileBuffer::operator=(FileBuffer &&other) noexcept
{
    FileBuffer taken(std::move(other));
    std::swap(m_mapping, taken.m_mapping);
    std::swap(m_mappedSize, taken.m_mappedSize);
    std::swap(m_data, taken.m_data);
    std::swap(m_size, taken.m_size);
    std::swap(m_releasedSize, taken.m_releasedSize);
    return *this;
}

void FileBuffer::release(size_t count)
{
    const size_t end = std::min(count, m_size) / hugePageSize * hugePageSize;
    if (end > m_releasedSize) {
        madvise(m_data + m_releasedSize, end - m_releasedSize, MADV_DONTNEED);
        m_releasedSize = end;
    }
}

bool FileBuffer::fits(size_t size)
{
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly)) {
        return true; // No estimate: the mapping itself decides.
    }
    const QByteArray table = file.readAll();
    const size_t available = memoryValue(table, "MemAvailable");
    const size_t swap = memoryValue(table, "SwapFree");
    const bool fitsInMachine = size <= available || size - available <= swap;
    return fitsInMachine && size <= memoryLeftInControlGroups().value_or(size);
}

} // namespace quillhaven
