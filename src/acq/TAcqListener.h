#pragma once

class TAcqDriver;

/// Is told by a driver what arrives, on the thread that owns the driver. It may stop the driver while it is
/// told, but not destroy it.
class TAcqListener
{
public:
    virtual ~TAcqListener() = default;

    /// A block has been appended to the driver's signal.
    virtual void dataCallback(TAcqDriver* driver) = 0;
    /// The device signalled a pacemaker pulse at that absolute sample index.
    virtual void pacemakerCallback(TAcqDriver* driver, int sampleOffset) = 0;
    /// The acquisition failed and has ended. The message is UTF-8 and valid during the call.
    virtual void errorCallback(TAcqDriver* driver, const char* message) = 0;
    /// The link to the device is lost, for drivers that can tell that from other failures.
    virtual void communicationFailedCallback(TAcqDriver* driver) = 0;
};
