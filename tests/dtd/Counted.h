#pragma once

#include "VexXml/Dtd.h"

namespace support {

/// Models and definitions of a caller's own, which count how many of them live.
class CountedModel : public Xml::AnySpec {
public:
    explicit CountedModel(int& living) : AnySpec(nullptr), mLiving(living) { ++mLiving; }
    CountedModel(const CountedModel&) = delete;
    CountedModel& operator=(const CountedModel&) = delete;
    ~CountedModel() override { --mLiving; }
    ContentSpec* clone(Xml::Dtd* /*newDtd*/) const override { return new CountedModel(mLiving); }

private:
    int& mLiving;
};

class CountedParticle : public Xml::NameSpec {
public:
    explicit CountedParticle(int& living) : NameSpec(nullptr, "counted"), mLiving(living) {
        ++mLiving;
    }
    CountedParticle(const CountedParticle&) = delete;
    CountedParticle& operator=(const CountedParticle&) = delete;
    ~CountedParticle() override { --mLiving; }
    CpSpec* clone(Xml::Dtd* /*newDtd*/) const override { return new CountedParticle(mLiving); }

private:
    int& mLiving;
};

class CountedDefinition : public Xml::AttStringType {
public:
    CountedDefinition(int& living, const char* value)
        : AttStringType(Xml::AttValue, value), mLiving(living) {
        ++mLiving;
    }
    CountedDefinition(const CountedDefinition&) = delete;
    CountedDefinition& operator=(const CountedDefinition&) = delete;
    ~CountedDefinition() override { --mLiving; }
    AttDef* clone() const override {
        return new CountedDefinition(mLiving, getDefault().toCString());
    }

private:
    int& mLiving;
};

}  // namespace support
