#pragma once

/// Something that keeps its state in the user's settings file.
class QlumStorableObject
{
public:
    virtual ~QlumStorableObject() = default;

    virtual void load() = 0;
    virtual void store() = 0;
};
