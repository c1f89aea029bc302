#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "VexXml/Readers.h"

namespace Xml {

const char* nameOf(std::uint64_t ReadLimits::*limit);

/// What a limited read may still take. All readers that take part in it share it.
class ReadBudget {
public:
    /// Lets one more reader take part for as long as this lives.
    class Share {
    public:
        Share(ReadBudget* budget, ReadBudget*& place)
            : mPlace(place), mFormer(std::exchange(place, budget != nullptr ? budget : place)) {}
        ~Share() { mPlace = mFormer; }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;

    private:
        ReadBudget*& mPlace;
        ReadBudget* mFormer;
    };

    explicit ReadBudget(std::shared_ptr<const ReadLimits> limits) : mLimits(std::move(limits)) {
        mTaken.nodes = mTaken.entityGrowth = 0;
        mTaken.declarations = mTaken.declarationBytes = 0;
    }

    const ReadLimits& limits() const { return *mLimits; }

    bool isWithin(std::uint64_t ReadLimits::*limit, std::uint64_t amount) const {
        return amount <= (*mLimits).*limit;
    }
    /// Of a limit for all amounts together.
    bool canTake(std::uint64_t ReadLimits::*limit, std::uint64_t amount) const {
        return isWithin(limit, mTaken.*limit + amount);
    }
    std::uint64_t taken(std::uint64_t ReadLimits::*limit) const { return mTaken.*limit; }
    void take(std::uint64_t ReadLimits::*limit, std::uint64_t amount) { mTaken.*limit += amount; }

private:
    std::shared_ptr<const ReadLimits> mLimits;
    ReadLimits mTaken;  ///< the amounts that are added up; nothing else is used
};

}  // namespace Xml
