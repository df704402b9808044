// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
//
// teko-bands EDGES [masks] < SONGS > BANDS: measures what an estimator of masks learns from.
// EDGES: the bins at which bands begin, and Stft::binCount, separated by commas. SONGS: any number
// of songs at 44100 Hz, each a 32-bit number of samples, then 32-bit floats: for each part, in the
// order of Part, its left and its right channel. BANDS: for each song, for each frame, 32-bit
// floats: `fieldCount` rows of a number for each band; with "masks", then the separator's mask of
// each part at each bin.
#include "localservice/engine/cues.h"
#include "localservice/engine/cueweights.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

using namespace localservice;

namespace {

constexpr int sampleRate = 44100;
// The energy of the left and the right channel, their common energy; how much lasts, how much is
// struck. Then for each part: the energy under its mask, under its mask twice, the part's own
// energy, its likeness to the mix, and that under its mask.
enum Field { Left, Right, Common, Lasting, Struck, Masked, MaskedTwice, Own, Like, LikeMasked };
constexpr std::size_t perPart = 5;
constexpr std::size_t fieldCount = Masked + perPart * partCount;

struct Song
{
    std::size_t frames = 0; // of sound
    std::vector<float> parts;

    // Samples of a part's side from `begin`, which may lie outside the song.
    void copy(std::size_t plane, std::ptrdiff_t begin, std::span<float> to) const
    {
        for (std::size_t i = 0; i < to.size(); ++i) {
            const std::ptrdiff_t at = begin + static_cast<std::ptrdiff_t>(i);
            const bool inside = at >= 0 && at < static_cast<std::ptrdiff_t>(frames);
            to[i] = inside ? parts[plane * frames + static_cast<std::size_t>(at)] : 0;
        }
    }

    [[nodiscard]] Planes mixAt(std::size_t hop) const
    {
        Planes mix(2, std::vector<float>(Stft::hopSize));
        std::vector<float> one(Stft::hopSize);
        for (std::size_t plane = 0; plane < 2 * partCount; ++plane) {
            copy(plane, static_cast<std::ptrdiff_t>(hop * Stft::hopSize), one);
            for (std::size_t i = 0; i < one.size(); ++i)
                mix[plane % 2][i] += one[i];
        }
        return mix;
    }

    [[nodiscard]] bool plays(std::size_t part) const
    {
        const auto begin = parts.begin() + static_cast<std::ptrdiff_t>(2 * part * frames);
        return std::any_of(begin, begin + static_cast<std::ptrdiff_t>(2 * frames),
                           [](float value) { return value != 0; });
    }
};

std::optional<Song> readSong()
{
    std::int32_t frames = 0;
    if (std::fread(&frames, sizeof frames, 1, stdin) != 1)
        return std::nullopt;
    Song song{static_cast<std::size_t>(frames), {}};
    song.parts.resize(2 * partCount * song.frames);
    if (std::fread(song.parts.data(), sizeof(float), song.parts.size(), stdin) != song.parts.size())
        return std::nullopt;
    return song;
}

class Bands
{
public:
    explicit Bands(const char *edges)
        : m_bandOfBin(Stft::binCount)
    {
        std::vector<std::size_t> begins;
        for (const char *at = edges; at != nullptr; at = std::strchr(at, ',')) {
            at += *at == ',' ? 1 : 0;
            begins.push_back(static_cast<std::size_t>(std::atoi(at)));
        }
        m_count = begins.size() - 1;
        for (std::size_t band = 0; band < m_count; ++band) {
            for (std::size_t bin = begins[band]; bin < begins[band + 1]; ++bin)
                m_bandOfBin.at(bin) = band;
        }
    }

    void clear() { m_sums.assign(fieldCount * m_count, 0); }
    void add(std::size_t field, std::size_t bin, float value)
    {
        m_sums[field * m_count + m_bandOfBin[bin]] += value;
    }
    [[nodiscard]] const std::vector<float> &sums() const { return m_sums; }

private:
    std::vector<std::size_t> m_bandOfBin;
    std::size_t m_count = 0;
    std::vector<float> m_sums;
};

float squared(float value)
{
    return value * value;
}

void addMix(const FrameHistory &history, const FrameMasks &masks, Bands &bands)
{
    const Frame &frame = history.frame(0);
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const std::complex<float> left = frame.channels[0][bin];
        const std::complex<float> right = frame.channels[1][bin];
        bands.add(Left, bin, std::norm(left));
        bands.add(Right, bin, std::norm(right));
        bands.add(Common, bin, (left * std::conj(right)).real());
        bands.add(Lasting, bin, squared(history.sustained()[bin]));
        bands.add(Struck, bin, squared(history.transient()[bin]));
        for (std::size_t part = 0; part < partCount; ++part) {
            const float masked = squared(frame.magnitudes[bin]) * masks[part][bin];
            bands.add(Masked + perPart * part, bin, masked);
            bands.add(MaskedTwice + perPart * part, bin, masked * masks[part][bin]);
        }
    }
}

void addPart(std::size_t part, const Spectrum &spectrum, const Spectrum &mix,
             const std::vector<float> &mask, Bands &bands)
{
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const float like = (spectrum[bin] * std::conj(mix[bin])).real();
        bands.add(Own + perPart * part, bin, std::norm(spectrum[bin]));
        bands.add(Like + perPart * part, bin, like);
        bands.add(LikeMasked + perPart * part, bin, like * mask[bin]);
    }
}

void write(const std::vector<float> &values)
{
    std::fwrite(values.data(), sizeof(float), values.size(), stdout);
}

class SongMeter
{
public:
    SongMeter(const Song &song, Bands &bands, bool withMasks)
        : m_song(song)
        , m_bands(bands)
        , m_withMasks(withMasks)
    {
        for (std::size_t part = 0; part < partCount; ++part)
            m_plays[part] = song.plays(part);
    }

    void run()
    {
        const std::size_t hops = (m_song.frames + Stft::hopSize - 1) / Stft::hopSize;
        const std::size_t end = hops + Stft::overlap - 1 + FrameHistory::reach;
        for (std::size_t hop = 0; hop < end; ++hop) {
            m_history.push(m_song.mixAt(hop));
            m_model.computeMasks(m_meter.measure(m_history).values, m_masks);
            if (hop >= FrameHistory::reach)
                writeFrame(hop - FrameHistory::reach);
        }
    }

private:
    void writeFrame(std::size_t frame)
    {
        m_bands.clear();
        addMix(m_history, m_masks, m_bands);
        const auto begin = (static_cast<std::ptrdiff_t>(frame) - Stft::overlap + 1) * Stft::hopSize;
        for (std::size_t plane = 0; plane < 2 * partCount; ++plane) {
            if (!m_plays[plane / 2])
                continue;
            m_song.copy(plane, begin, m_samples);
            m_stft.forward(m_samples, m_spectrum);
            addPart(plane / 2, m_spectrum, m_history.frame(0).channels[plane % 2],
                    m_masks[plane / 2], m_bands);
        }
        write(m_bands.sums());
        for (std::size_t part = 0; m_withMasks && part < partCount; ++part)
            write(m_masks[part]);
    }

    const Song &m_song;
    Bands &m_bands;
    bool m_withMasks;
    std::array<bool, partCount> m_plays{};
    FrameHistory m_history{2};
    CueMeter m_meter{sampleRate};
    MaskModel m_model{cueWeights, float(sampleRate) / Stft::frameSize};
    FrameMasks m_masks;
    Stft m_stft;
    std::vector<float> m_samples = std::vector<float>(Stft::frameSize);
    Spectrum m_spectrum;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2 || argc > 3) {
        std::fputs("usage: teko-bands EDGES [masks] < SONGS > BANDS\n", stderr);
        return 2;
    }
    Bands bands(argv[1]);
    while (const std::optional<Song> song = readSong()) {
        SongMeter(*song, bands, argc == 3).run();
        std::fflush(stdout);
    }
    return std::ferror(stdin) || std::ferror(stdout) ? EXIT_FAILURE : EXIT_SUCCESS;
}
