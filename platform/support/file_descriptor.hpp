// SPDX-License-Identifier: Apache-2.0
/** A file descriptor and its life. */
#pragma once

#include <unistd.h>
#include <utility>

namespace platform_support {

/** A file descriptor that is closed at the end. */
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1) : descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            Close();
            descriptor = other.Release();
        }
        return *this;
    }
    ~FileDescriptor() { Close(); }

    int Get() const { return descriptor; }
    bool Valid() const { return descriptor >= 0; }

    /** Gives the descriptor away, open. */
    int Release() { return std::exchange(descriptor, -1); }

private:
    void Close() const {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }

    int descriptor;
};

} // namespace platform_support
