#include "analysis/spectrum/FourierTransform.h"

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/tx.h>
}

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace {

// Powers of two that the analyses use, with room on either side.
constexpr int kSmallestSize = 32;
constexpr int kLargestSize = 65536;

struct Freed {
    void operator()(void* memory) const { av_free(memory); }
};
/// Aligned for every processor, which the library's fastest code asks for.
using Buffer = std::unique_ptr<float[], Freed>;

Buffer makeBuffer(int count)
{
    Buffer buffer(static_cast<float*>(av_calloc(static_cast<size_t>(count), sizeof(float))));
    if (!buffer)
        throw std::bad_alloc();
    return buffer;
}

} // namespace

struct FourierTransform::Setup {
    explicit Setup(int frameSize)
        : size(frameSize)
        , frame(makeBuffer(size))
        , spectrum(makeBuffer(size + 2))
    {
        const float scale = 1;
        if (av_tx_init(&context, &function, AV_TX_FLOAT_RDFT, 0, size, &scale, 0) < 0)
            throw std::runtime_error("the Fourier transform cannot be set up");
    }
    ~Setup() { av_tx_uninit(&context); }
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;

    int size;
    Buffer frame;
    Buffer spectrum; ///< real and imaginary parts in turn
    AVTXContext* context = nullptr;
    av_tx_fn function = nullptr;
};

FourierTransform::FourierTransform(int size)
{
    if (size < kSmallestSize || size > kLargestSize || !std::has_single_bit(static_cast<unsigned>(size)))
        throw std::invalid_argument("the size of a frame is a power of two from 32 to 65536");
    m_setup = std::make_unique<Setup>(size);
}

FourierTransform::~FourierTransform() = default;
FourierTransform::FourierTransform(FourierTransform&&) noexcept = default;
FourierTransform& FourierTransform::operator=(FourierTransform&&) noexcept = default;

int FourierTransform::size() const
{
    return m_setup->size;
}

std::span<float> FourierTransform::frame()
{
    return {m_setup->frame.get(), static_cast<size_t>(m_setup->size)};
}

void FourierTransform::transform()
{
    m_setup->function(m_setup->context, m_setup->spectrum.get(), m_setup->frame.get(), sizeof(float));
}

std::span<const std::complex<float>> FourierTransform::spectrum() const
{
    return {reinterpret_cast<const std::complex<float>*>(m_setup->spectrum.get()),
            static_cast<size_t>(m_setup->size / 2 + 1)};
}

void FourierTransform::squaredMagnitudes(std::span<float> result) const
{
    const float* const values = m_setup->spectrum.get();
    const size_t count = std::min(result.size(), static_cast<size_t>(m_setup->size / 2 + 1));
    for (size_t i = 0; i < count; ++i)
        result[i] = values[2 * i] * values[2 * i] + values[2 * i + 1] * values[2 * i + 1];
}

std::vector<float> FourierTransform::hannWindow(int size)
{
    std::vector<float> window(static_cast<size_t>(size));
    const double scale = std::sqrt(2.0 / 3.0);
    for (int n = 0; n < size; ++n)
        window[static_cast<size_t>(n)] = static_cast<float>(scale * (1 - std::cos(2 * std::numbers::pi * n / size)));
    return window;
}
