#pragma once

/// A course of an exercise test: either a ramp or a sequence of stages.
class TProtocol
{
public:
    virtual ~TProtocol() = default;

    virtual bool isRamp() const = 0;
    virtual bool isStaged() const = 0;

protected:
    TProtocol() = default;
    TProtocol(const TProtocol&) = default;
    TProtocol& operator=(const TProtocol&) = default;
};
