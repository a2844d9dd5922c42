// The module runs with the C library of 2021. The linker would bind it to the newest form of each function that the
// library on the building machine has; those that have become newer since are bound here, by the linker's "--wrap",
// to the form that they have had from the beginning. What the two forms compute is the same.

extern "C"
{
    double __wrap_hypot (double, double);
    float __wrap_hypotf (float, float);

    double firstHypot (double, double);
    float firstHypotf (float, float);
}

double __wrap_hypot (double x, double y)
{
    return firstHypot (x, y);
}

float __wrap_hypotf (float x, float y)
{
    return firstHypotf (x, y);
}

// The version that each processor's C library began with. The formatter's versions differ about these lines.
// clang-format off
#if defined(__aarch64__)
__asm__(".symver firstHypot, hypot@GLIBC_2.17");
__asm__(".symver firstHypotf, hypotf@GLIBC_2.17");
#else
__asm__(".symver firstHypot, hypot@GLIBC_2.2.5");
__asm__(".symver firstHypotf, hypotf@GLIBC_2.2.5");
#endif
