#include "platform/audio/MediaInput.h"

#include "platform/audio/AudioFileError.h"
#include "platform/audio/FileImage.h"
#include "platform/audio/MpegFrames.h"

#include <array>

extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/intreadwrite.h>
}

namespace {

constexpr int kBufferBytes = 32 * 1024;
/// Errors of reading in a row, without a packet between, after which a file counts as ended.
constexpr int kMostErrors = 64;
/// Packets of plain 16 bit samples that are searched for compressed sound in disguise; a disguise shows in the first.
/// The library's own limit costs 10 ms of every opening.
constexpr int kProbedPackets = 16;
/// What holds its sound itself. Playlists and the like, which lead to other files, are not among them.
constexpr char kFormats[] = "mp3,aac,ac3,eac3,dts,flac,wav,w64,aiff,caf,mov,ogg,matroska,asf,ape,wv,tta,au,mpc,mpc8,"
                            "dsf,iff,tak,shn";
constexpr char kNoProtocol[] = "none";

[[noreturn]] void fail(int error)
{
    throw AudioFileError(error == AVERROR(ENOMEM) ? AudioFileError::Case::OutOfMemory : AudioFileError::Case::NoAudio);
}

/// Opening anything else than the image is refused.
int refuse(AVFormatContext*, AVIOContext** io, const char*, int, AVDictionary**)
{
    *io = nullptr;
    return AVERROR(EPERM);
}

/// The format of what follows an ID3v2 tag in front; null where there is none or nothing clear follows. The library
/// would look for it in ever larger pieces through a tag with pictures, tens of milliseconds long.
const AVInputFormat* formatBehindTag(const FileImage& image)
{
    constexpr qint64 kHeaderBytes = 10;
    constexpr qint64 kProbedBytes = 64 * 1024;
    std::array<uint8_t, kHeaderBytes> header{};
    qint64 offset = 0;
    while (image.read(offset, std::as_writable_bytes(std::span(header))) == kHeaderBytes && header[0] == 'I' &&
           header[1] == 'D' && header[2] == '3')
        offset += kHeaderBytes +
                  ((header[6] & 0x7F) << 21 | (header[7] & 0x7F) << 14 | (header[8] & 0x7F) << 7 | (header[9] & 0x7F));
    if (offset == 0)
        return nullptr;
    std::vector<uint8_t> bytes(kProbedBytes + AVPROBE_PADDING_SIZE);
    const qint64 count = image.read(offset, std::as_writable_bytes(std::span(bytes)).first(kProbedBytes));
    std::fill(bytes.begin() + std::max<qint64>(0, count), bytes.end(), 0);
    const AVProbeData data{"", bytes.data(), static_cast<int>(std::max<qint64>(0, count)), nullptr};
    int score = 0;
    const AVInputFormat* format = av_probe_input_format3(&data, 1, &score);
    return score > AVPROBE_SCORE_RETRY ? format : nullptr;
}

/// How far behind its stated place a packet stands. The stated one counts the bytes that were handed on, so it falls
/// back by whatever a demuxer left out as damaged. \param skipped what it was for the packet before.
qint64 bytesSkipped(const FileImage& image, const AVPacket& packet, qint64 skipped)
{
    constexpr size_t kCompared = 16;
    constexpr size_t kSearched = 64 * 1024;
    const std::span head(reinterpret_cast<const std::byte*>(packet.data),
                         std::min(kCompared, static_cast<size_t>(packet.size)));
    std::vector<std::byte> bytes(head.size());
    image.read(packet.pos + skipped, bytes);
    if (std::ranges::equal(bytes, head))
        return skipped;
    std::vector<std::byte> behind(kSearched);
    const qint64 count = image.read(packet.pos + skipped, behind);
    const auto searched = std::span(behind).first(static_cast<size_t>(std::max<qint64>(0, count)));
    const auto found = std::ranges::search(searched, head);
    return found.empty() ? skipped : skipped + (found.begin() - searched.begin());
}

PacketIndex::Trim trimOf(const AVPacket& packet)
{
    size_t size = 0;
    const uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    if (!data || size < 8)
        return {};
    return {AV_RL32(data), AV_RL32(data + 4)};
}

/// The sound of the file; all else in it is left out.
AVStream* chooseStream(AVFormatContext& format)
{
    const std::span streams(format.streams, format.nb_streams);
    // Otherwise every cover would be decoded just to learn its size.
    for (AVStream* stream : streams) {
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            continue;
        stream->codecpar->codec_type = AVMEDIA_TYPE_DATA;
        stream->codecpar->codec_id = AV_CODEC_ID_NONE;
    }
    if (const int error = avformat_find_stream_info(&format, nullptr); error < 0)
        fail(error);
    const int chosen = av_find_best_stream(&format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (chosen < 0)
        fail(chosen);
    for (AVStream* stream : std::span(format.streams, format.nb_streams))
        stream->discard = stream->index == chosen ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    return format.streams[chosen];
}

} // namespace

MediaInput::MediaInput(std::shared_ptr<FileImage> image)
    : m_image(std::move(image))
    , m_kind(formatBehindTag(*m_image))
{
    static const bool isQuiet = [] {
        av_log_set_level(AV_LOG_QUIET);
        return true;
    }();
    Q_UNUSED(isQuiet)
    openFormat();
}

int MediaInput::readBytes(void* opaque, uint8_t* into, int byteCount)
{
    auto& cursor = *static_cast<Cursor*>(opaque);
    const qint64 got = cursor.image->read(cursor.offset, {reinterpret_cast<std::byte*>(into), size_t(byteCount)});
    if (got < 0)
        return AVERROR(EIO);
    cursor.offset += got;
    return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

int64_t MediaInput::seekBytes(void* opaque, int64_t offset, int whence)
{
    auto& cursor = *static_cast<Cursor*>(opaque);
    const qint64 size = cursor.image->size();
    if (whence & AVSEEK_SIZE)
        return size;
    switch (whence & ~AVSEEK_FORCE) {
    case SEEK_CUR:
        offset += cursor.offset;
        break;
    case SEEK_END:
        offset += size;
        break;
    default:
        break;
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    cursor.offset = offset;
    return offset;
}

/// Opens beside what is open, which stays as it is when this fails.
void MediaInput::openFormat()
{
    auto cursor = std::make_unique<Cursor>(m_image);
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    av::Owner<AVIOContext> io(
        buffer ? avio_alloc_context(buffer, kBufferBytes, 0, cursor.get(), readBytes, nullptr, seekBytes) : nullptr);
    AVFormatContext* format = io ? avformat_alloc_context() : nullptr;
    if (!format)
        fail(AVERROR(ENOMEM));
    format->pb = io.get();
    format->io_open = refuse;
    format->format_whitelist = av_strdup(kFormats);
    format->max_probe_packets = kProbedPackets;
    format->protocol_whitelist = av_strdup(kNoProtocol);
    // Frees the context itself when it fails.
    if (const int error = avformat_open_input(&format, nullptr, m_kind, nullptr); error < 0)
        fail(error);
    av::Owner<AVFormatContext> owner(format);
    AVStream* stream = chooseStream(*format);
    m_format = std::move(owner);
    m_io = std::move(io);
    m_cursor = std::move(cursor);
    m_stream = stream;
    m_kind = format->iformat;
    m_restoresTime = false;
}

bool MediaInput::next(AVPacket& packet)
{
    for (int errors = 0; errors < kMostErrors;) {
        const int result = av_read_frame(m_format.get(), &packet);
        if (result == AVERROR_EOF)
            return false;
        if (result == AVERROR(ENOMEM))
            throw AudioFileError(AudioFileError::Case::OutOfMemory);
        if (result < 0) {
            ++errors;
            continue;
        }
        if (packet.stream_index == m_stream->index)
            break;
        av_packet_unref(&packet);
    }
    if (packet.stream_index != m_stream->index || !packet.data)
        return false;
    if (m_firstOffset < 0) {
        m_firstOffset = packet.pos;
        m_firstTime = packet.pts;
    }
    if (m_restoresTime)
        restoreTime(packet);
    return true;
}

void MediaInput::restoreTime(AVPacket& packet)
{
    const auto entry = m_index->at(packet.pos);
    packet.pts = packet.dts = entry ? entry->time : m_nextTime;
    m_nextTime = packet.pts + packet.duration;
    av_packet_free_side_data(&packet);
    const PacketIndex::Trim trim = m_index->trimAt(packet.pos);
    if (trim == PacketIndex::Trim())
        return;
    uint8_t* data = av_packet_new_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, 10);
    if (!data)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    AV_WL32(data, trim.front);
    AV_WL32(data + 4, trim.back);
    data[8] = data[9] = 0;
}

bool MediaInput::seek(int64_t time)
{
    if (!isBareStream())
        return avformat_seek_file(m_format.get(), m_stream->index, INT64_MIN, time, time, 0) >= 0;
    if (index().isEmpty())
        return false;
    const PacketIndex::Entry& start = index().startFor(time);
    if (av_seek_frame(m_format.get(), m_stream->index, start.offset, AVSEEK_FLAG_BYTE) < 0)
        return false;
    m_restoresTime = true;
    m_nextTime = start.time;
    return true;
}

void MediaInput::rewind()
{
    openFormat();
}

bool MediaInput::isBareStream() const
{
    if (av_match_name(m_format->iformat->name, "mp3,aac,ac3,eac3,dts"))
        return true;
    // Compressed sound in a container whose arithmetic of places is made for plain samples.
    return av_match_name(m_format->iformat->name, "wav,w64,aiff,au") &&
           av_get_exact_bits_per_sample(m_stream->codecpar->codec_id) == 0;
}

const PacketIndex& MediaInput::index()
{
    if (m_index)
        return *m_index;
    const AVRational base = m_stream->time_base;
    const int64_t ticksASecond = base.den / base.num;
    const int rate = m_stream->codecpar->sample_rate;
    const bool isPlain = m_stream->codecpar->codec_id == AV_CODEC_ID_MP3 && rate > 0 && ticksASecond % rate == 0;
    if (isPlain && m_firstTime == 0 && m_firstOffset >= 0) {
        const auto information = MpegFrames::informationBefore(*m_image, m_firstOffset);
        m_index = MpegFrames::walk(*m_image, m_firstOffset, ticksASecond / rate, information);
    }
    if (m_index)
        return *m_index;
    m_index = scouted();
    return *m_index;
}

/// The index as the demuxer itself finds the packets, for what is not a plain chain of frames.
PacketIndex MediaInput::scouted() const
{
    MediaInput scout(m_image);
    PacketIndex index;
    const av::Owner<AVPacket> packet(av_packet_alloc());
    int64_t end = 0;
    qint64 skipped = 0;
    while (packet && scout.next(*packet)) {
        if (packet->pos >= 0 && packet->pts != AV_NOPTS_VALUE) {
            skipped = bytesSkipped(*m_image, *packet, skipped);
            index.append(packet->pos + skipped, packet->pts, trimOf(*packet));
            end = std::max(end, packet->pts + packet->duration);
        }
        av_packet_unref(packet.get());
    }
    index.setEnd(end);
    return index;
}

int64_t MediaInput::statedDuration()
{
    if (isBareStream())
        return index().end();
    if (m_stream->duration > 0)
        return m_stream->duration;
    return m_format->duration > 0 ? av_rescale_q(m_format->duration, {1, AV_TIME_BASE}, m_stream->time_base)
                                  : AV_NOPTS_VALUE;
}

std::optional<qint64> MediaInput::trustedFrames() const
{
    if (m_stream->codecpar->codec_id != AV_CODEC_ID_MP3 || !isBareStream() || m_firstOffset < 0)
        return std::nullopt;
    // Of a small file the frames are counted at once.
    constexpr qint64 kSmallBytes = 1024 * 1024;
    if (m_image->size() < kSmallBytes)
        return std::nullopt;
    const auto information = MpegFrames::informationBefore(*m_image, m_firstOffset);
    if (!information || information->frames == 0 || information->byteCount == 0)
        return std::nullopt;
    // Less than what was told: a part of the file is missing.
    constexpr qint64 kTolerance = 4096;
    if (m_image->size() - m_firstOffset + kTolerance < information->byteCount)
        return std::nullopt;
    const qint64 samples = information->frames * (m_stream->codecpar->sample_rate >= 32000 ? 1152 : 576);
    return samples - MpegFrames::silentSamples(*information);
}
