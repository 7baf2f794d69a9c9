#pragma once

/// Is told of every append to a signal, on the main thread. It may add and remove listeners while it is told.
class TSignalListener
{
public:
    virtual ~TSignalListener() = default;
    virtual void signalChanged() = 0;
};
