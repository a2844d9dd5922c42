#pragma once

namespace luna
{

/** The drawing interface of the shared library's note grids, which this product has none of. */
struct MusicGridBase
{
    class LookAndFeelMethods
    {
    public:
        virtual ~LookAndFeelMethods() = default;
    };
};

} // namespace luna
