#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <memory>

/// Owners of the objects of libav.
namespace av {

/// Gives each object back by the library's own function.
struct Free {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(SwrContext* converter) const { swr_free(&converter); }
    void operator()(AVIOContext* io) const
    {
        // The buffer may have been replaced since it was handed over.
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

/// The one owner of such an object; null where it could not be made.
template <class T>
using Owner = std::unique_ptr<T, Free>;

} // namespace av
