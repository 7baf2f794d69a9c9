#pragma once

class TBeat;

/// Is told of beats as a detector finds them.
class TBeatListener
{
public:
    virtual ~TBeatListener() = default;
    /// Called for every beat that went into the store, rejected ones too.
    virtual void beatFound(const TBeat& beat) = 0;

protected:
    TBeatListener() = default;
    TBeatListener(const TBeatListener&) = default;
    TBeatListener& operator=(const TBeatListener&) = default;
};
