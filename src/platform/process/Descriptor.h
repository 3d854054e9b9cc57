#pragma once

#include <cerrno>
#include <system_error>
#include <utility>

#include <unistd.h>

/// Owner of one open file descriptor of the system.
class Descriptor {
public:
    /// Owns none, until another one is moved in.
    Descriptor() = default;
    /// \param descriptor is closed with this object; negative for none
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    /// What a system call returned. Throws std::system_error with errno for a negative value.
    static Descriptor checked(int result)
    {
        if (result < 0)
            throw std::system_error(errno, std::generic_category());
        return Descriptor(result);
    }
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    /// Stays this object's; -1 for none.
    int get() const { return m_descriptor; }
    /// Whether there is one to be closed.
    bool isOpen() const { return m_descriptor >= 0; }
    /// Early and once; a failure of closing is not told.
    void close()
    {
        if (m_descriptor >= 0)
            ::close(std::exchange(m_descriptor, -1));
    }

private:
    int m_descriptor = -1;
};
