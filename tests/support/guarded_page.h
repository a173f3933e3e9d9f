#pragma once

/// Memory between two pages that must not be touched, for code that must keep within its bounds.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>

/// One readable and writable page; a touch of the byte before it or behind it is a SIGSEGV.
class GuardedPage {
  public:
    /// What the page holds where nothing was put.
    static constexpr unsigned char blank = 0xA5;

    /// std::bad_alloc if the system has no memory.
    GuardedPage() : m_size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
        void* base = mmap(nullptr, 3 * m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (base == MAP_FAILED) {
            throw std::bad_alloc();
        }
        m_base = static_cast<unsigned char*>(base);
        if (mprotect(begin(), m_size, PROT_READ | PROT_WRITE) != 0) {
            throw std::bad_alloc();
        }
        std::memset(begin(), blank, m_size);
    }
    ~GuardedPage() { munmap(m_base, 3 * m_size); }
    GuardedPage(const GuardedPage&) = delete;
    GuardedPage& operator=(const GuardedPage&) = delete;

    unsigned char* begin() const { return m_base + m_size; }
    unsigned char* end() const { return begin() + m_size; }

    /// Room for `len` bytes, `gap` bytes behind the front guard or before the back one.
    unsigned char* atFront(int gap) const { return begin() + gap; }
    unsigned char* atBack(int len, int gap) const { return end() - gap - len; }

    /// Whether up to `reach` bytes on either side of [data, data + len) are still blank.
    bool isBlankAround(const unsigned char* data, int len, int reach) const {
        const unsigned char* behind = data + len;
        return isBlank(data - begin() < reach ? begin() : data - reach, data) &&
               isBlank(behind, end() - behind < reach ? end() : behind + reach);
    }
    void wipe(unsigned char* data, int len) const { std::memset(data, blank, static_cast<std::size_t>(len)); }

  private:
    static bool isBlank(const unsigned char* at, const unsigned char* end) {
        while (at != end && *at == blank) {
            ++at;
        }
        return at == end;
    }

    std::size_t m_size;
    unsigned char* m_base = nullptr;
};
