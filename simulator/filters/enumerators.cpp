#include "simulator/filters/enumerators.h"

#include <new>

namespace filters {

namespace {

IPin* handOut(const ComPtr<IPin>& pin) {
    pin.Get()->AddRef();
    return pin.Get();
}

AM_MEDIA_TYPE* handOut(const MediaType& type) {
    return type.clone();
}

// Interface is IEnumPins or IEnumMediaTypes, Item what it hands out, Stored what the list holds.
template <class Interface, class Item, class Stored>
class Enumerator final : public Counted<Interface> {
public:
    explicit Enumerator(const std::vector<Stored>& items) : items_(items) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, Item** out, ULONG* fetched) override {
        ULONG given = 0;
        while (given < wanted && next_ < items_.size()) {
            out[given++] = handOut(items_[next_++]);
        }
        if (fetched) {
            *fetched = given;
        }
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_.size() - next_;
        const bool enough = count <= left;
        next_ += enough ? count : left;
        return enough ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** out) override {
        auto* copy = new (std::nothrow) Enumerator(items_);
        if (!copy) {
            return E_OUTOFMEMORY;
        }
        copy->next_ = next_;
        *out = copy;
        return S_OK;
    }

private:
    std::size_t next_ = 0;
    std::vector<Stored> items_;
};

template <class Interface, class Item, class Stored>
HRESULT make(const std::vector<Stored>& items, Interface** out) {
    *out = new (std::nothrow) Enumerator<Interface, Item, Stored>(items);
    return *out ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

HRESULT enumeratePins(const PinList& pins, IEnumPins** out) {
    return make<IEnumPins, IPin>(pins, out);
}

HRESULT enumerateTypes(const TypeList& types, IEnumMediaTypes** out) {
    return make<IEnumMediaTypes, AM_MEDIA_TYPE>(types, out);
}

}  // namespace filters
