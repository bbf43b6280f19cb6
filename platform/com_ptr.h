// Owns one reference to a COM object. AddRef and Release of the player stand here and nowhere
// else. Windows only.
#pragma once

#include <unknwn.h>

#include <utility>

namespace platform {

template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr& other) : object_(other.object_) {
        if (object_ != nullptr) {
            object_->AddRef();
        }
    }
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() { reset(); }

    // Gives the reference up. Returns the count that the object reports, 0 without an object.
    ULONG reset() {
        Interface* const object = std::exchange(object_, nullptr);
        return object != nullptr ? object->Release() : 0;
    }

    [[nodiscard]] Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    // For calls that hand out a reference; what was held is released first.
    [[nodiscard]] Interface** out() {
        reset();
        return &object_;
    }
    [[nodiscard]] void** outVoid() { return reinterpret_cast<void**>(out()); }

    // Queries this object; null without one or without the interface.
    template <typename Other>
    [[nodiscard]] ComPtr<Other> query(REFIID iid) const {
        ComPtr<Other> other;
        if (object_ != nullptr) {
            object_->QueryInterface(iid, other.outVoid());
        }
        return other;
    }

private:
    Interface* object_ = nullptr;
};

}  // namespace platform
