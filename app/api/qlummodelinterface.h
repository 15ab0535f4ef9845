#pragma once

/// Common base of the item models that hold live data.
class QlumModelInterface
{
public:
    virtual ~QlumModelInterface() = default;
};
