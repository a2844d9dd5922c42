// Static FFTW brings all that it could ever be asked for, a quarter of the module. It finds its pieces by tables, of
// which the linker takes the first that it meets: these have what a transform from real numbers to complex ones can
// use whose size is a power of two, and so the rest stays out. The plans, and the last bit of the results, are those
// of all tables.

// By their names in FFTW, with sizes and, behind those of vectors, the instruction set.
// clang-format off
#define ORVO_REAL(X) \
    X (r2cf_2) X (r2cf_4) X (r2cf_8) X (r2cf_16) X (r2cf_32) X (r2cf_64) X (r2cf_128) X (r2cfII_2) \
    X (r2cfII_4) X (r2cfII_8) X (r2cfII_16) X (r2cfII_32) X (r2cfII_64) X (hc2cf_2) X (hc2cf_4) \
    X (hc2cf_8) X (hc2cf_16) X (hc2cf_32) X (hc2cf2_4) X (hc2cf2_8) X (hc2cf2_16) X (hc2cf2_32)

#define ORVO_REAL_IN_VECTORS(X, set) \
    X (hc2cfdftv_2_##set) X (hc2cfdftv_4_##set) X (hc2cfdftv_8_##set) X (hc2cfdftv_16_##set) \
    X (hc2cfdftv_32_##set)

#define ORVO_COMPLEX_IN_VECTORS(X, set) \
    X (n1fv_2_##set) X (n1fv_4_##set) X (n1fv_8_##set) X (n1fv_16_##set) X (n1fv_32_##set) \
    X (n1fv_64_##set) X (n1fv_128_##set) X (n2fv_2_##set) X (n2fv_4_##set) X (n2fv_8_##set) \
    X (n2fv_16_##set) X (n2fv_32_##set) X (n2fv_64_##set) X (t1fv_2_##set) X (t1fv_4_##set) \
    X (t1fv_8_##set) X (t1fv_16_##set) X (t1fv_32_##set) X (t1fv_64_##set) X (t2fv_2_##set) \
    X (t2fv_4_##set) X (t2fv_8_##set) X (t2fv_16_##set) X (t2fv_32_##set) X (t2fv_64_##set) \
    X (t3fv_4_##set) X (t3fv_8_##set) X (t3fv_16_##set) X (t3fv_32_##set)
// clang-format on

// As FFTW declares them.
#define ORVO_DECLARE(name) void fftwf_codelet_##name (void*);
#define ORVO_ENTRY(name) { fftwf_codelet_##name, "fftwf_codelet_" #name },
#define ORVO_NOTHING
#define ORVO_TABLE(table, entries)                                                                           \
    extern const Entry fftwf_solvtab_##table[];                                                              \
    const Entry fftwf_solvtab_##table[] { entries {} };
#define ORVO_TABLES_IN_VECTORS(set)                                                                          \
    ORVO_REAL_IN_VECTORS (ORVO_DECLARE, set)                                                                 \
    ORVO_TABLE (rdft_##set, ORVO_REAL_IN_VECTORS (ORVO_ENTRY, set))                                          \
    ORVO_COMPLEX_IN_VECTORS (ORVO_DECLARE, set)                                                              \
    ORVO_TABLE (dft_##set, ORVO_COMPLEX_IN_VECTORS (ORVO_ENTRY, set))

namespace
{
/** One without a function ends the table. */
struct Entry
{
    void (*add) (void* planner);
    const char* name;
};
} // namespace

extern "C"
{
    void fftwf_reodft_conf_standard (void* planner);

    void fftwf_reodft_conf_standard (void*)
    {
    }

    ORVO_TABLE (rdft_r2cb, ORVO_NOTHING)
    ORVO_TABLE (rdft_r2r, ORVO_NOTHING)
    ORVO_REAL (ORVO_DECLARE)
    ORVO_TABLE (rdft_r2cf, ORVO_REAL (ORVO_ENTRY))

    ORVO_TABLE (dft_standard, ORVO_NOTHING)

#if defined(__aarch64__)
    ORVO_TABLES_IN_VECTORS (neon)
#else
    ORVO_TABLES_IN_VECTORS (sse2)
    ORVO_TABLES_IN_VECTORS (avx)
#endif
}
