#include <array>
#include <atomic>
#include <memory>

#include "VexXml/Dom.h"
#include "values/Bytes.h"

namespace Xml::Detail {
namespace {

// The texts that nodes share, for the whole process. Nothing is ever taken out, so that finding one
// needs no lock and sharing it no count. What that costs is bounded: only so many names go in, and
// only short ones. All further ones are owned by their nodes.
class SharedNames {
public:
    enum class Missing { IsAdded, IsNot };

    /// Null when the name is not shared.
    const std::string* find(const char* bytes, std::size_t size, Missing missing);

private:
    using Slot = std::atomic<const std::string*>;

    static constexpr std::size_t kSlots = 16384;
    static constexpr std::size_t kMostNames = kSlots / 2;
    static constexpr std::size_t kMostProbes = 16;
    static constexpr std::size_t kLongestName = 64;

    const std::string* add(Slot& slot, const char* bytes, std::size_t size);

    std::array<Slot, kSlots> mSlots{};
    std::atomic<std::size_t> mCount{0};
};

SharedNames sharedNames;

// Never destroyed, as nodes may live as long as the process, and made without memory.
const std::string* noName() {
    union Kept {
        Kept() : text() {}
        ~Kept() {}
        const std::string text;
    };
    static const Kept name;
    return &name.text;
}

// From the size and up to 16 bytes at the two ends.
std::size_t hashOf(const char* bytes, std::size_t size) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (size >= 8) {
        first = Bytes::load<std::uint64_t>(bytes);
        last = Bytes::load<std::uint64_t>(bytes + size - 8);
    } else if (size >= 4) {
        first = Bytes::load<std::uint32_t>(bytes);
        last = Bytes::load<std::uint32_t>(bytes + size - 4);
    } else if (size > 0) {
        first = static_cast<unsigned char>(bytes[0]);
        const std::uint64_t middle = Bytes::load<std::uint8_t>(bytes + size / 2);
        last = middle << 8 | Bytes::load<std::uint8_t>(bytes + size - 1);
    }
    std::uint64_t hash = (first ^ size) * kFactor;
    hash = ((hash ^ hash >> 32) + last) * kFactor;
    return static_cast<std::size_t>(hash ^ hash >> 32);
}

bool isEqual(const std::string& text, const char* bytes, std::size_t size) {
    return text.size() == size && Bytes::areEqual(text.data(), bytes, size);
}

const std::string* SharedNames::find(const char* bytes, std::size_t size, Missing missing) {
    if (size > kLongestName) return nullptr;
    const std::size_t hash = hashOf(bytes, size);
    for (std::size_t probe = 0; probe < kMostProbes; ++probe) {
        Slot& slot = mSlots[(hash + probe) % kSlots];
        const std::string* text = slot.load(std::memory_order_acquire);
        if (text == nullptr && missing == Missing::IsAdded) text = add(slot, bytes, size);
        if (text == nullptr || isEqual(*text, bytes, size)) return text;
    }
    return nullptr;
}

// What is in the slot afterwards; another thread may have been quicker.
const std::string* SharedNames::add(Slot& slot, const char* bytes, std::size_t size) {
    if (mCount.load(std::memory_order_relaxed) >= kMostNames) return nullptr;
    auto text = std::make_unique<const std::string>(bytes, size);
    const std::string* present = nullptr;
    if (!slot.compare_exchange_strong(present, text.get(), std::memory_order_acq_rel)) {
        return present;
    }
    mCount.fetch_add(1, std::memory_order_relaxed);
    return text.release();
}

}  // namespace

NodeName::NodeName() noexcept : mTagged(reinterpret_cast<const char*>(noName())) {}

NodeName::NodeName(NodeName&& other) noexcept : NodeName() { swap(other); }

NodeName& NodeName::operator=(NodeName other) noexcept {
    swap(other);
    return *this;
}

const char* NodeName::tagFor(const char* name, std::size_t size) {
    const std::string* text = sharedNames.find(name, size, SharedNames::Missing::IsAdded);
    return text != nullptr ? reinterpret_cast<const char*>(text) : makeOwn(name, size);
}

const char* NodeName::makeOwn(const char* name, std::size_t size) {
    auto texts = std::make_unique<Texts>();
    texts->name.assign(name, size);
    return reinterpret_cast<const char*>(texts.release()) + 1;
}

const std::string* NodeName::sharedText(const std::string& name) {
    return sharedNames.find(name.data(), name.size(), SharedNames::Missing::IsNot);
}

NodeName::Texts& NodeName::ownTexts() {
    if (!isOwn()) mTagged = makeOwn(shared()->data(), shared()->size());
    return own();
}

void NodeName::deleteOwn() noexcept { delete &own(); }

}  // namespace Xml::Detail
