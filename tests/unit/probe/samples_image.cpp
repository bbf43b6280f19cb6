// Still images and WAVE files.
#include "build_riff.h"
#include "samples.h"

namespace probe_test {
namespace {

Bytes jpegSegment(std::uint8_t marker, std::size_t bodyBytes) {
    return Builder().u8(0xFF).u8(marker).be16(bodyBytes + 2).fill(bodyBytes, 0x11).take();
}

Bytes jpegFrame(std::uint8_t marker, unsigned precision, unsigned lines, unsigned samples,
                unsigned components) {
    Builder b;
    b.u8(0xFF).u8(marker).be16(8 + 3 * components).u8(precision).be16(lines).be16(samples);
    return b.u8(components).fill(3 * components, 1).take();
}

Bytes jpeg(std::initializer_list<Bytes> segments) {
    return Builder().u8(0xFF).u8(0xD8).bytes(join(segments)).padTo(128, 0xAA).take();
}

Bytes png(unsigned width, unsigned height, unsigned depth, std::size_t size) {
    Builder b;
    b.bytes({0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A}).be32(13).text("IHDR");
    b.be32(width).be32(height).u8(depth).u8(2).fill(3).padTo(size, 0x77);
    Bytes bytes = b.take();
    bytes.resize(size);
    return bytes;
}

Bytes gif(unsigned packed) {
    return Builder().text("GIF89a").le16(320).le16(240).u8(packed).padTo(80).take();
}

Bytes bmp(std::uint32_t height, unsigned bitCount) {
    Builder b;
    b.text("BM").le32(70).le32(0).le32(54).le32(40).le32(640).le32(height).le16(1).le16(bitCount);
    return b.padTo(80).take();
}

Bytes wave(const Bytes& format, std::size_t formatAt, std::size_t size) {
    Builder b;
    b.text("RIFF").le32(size - 8).text("WAVE").padTo(formatAt, 0x20);
    return b.bytes(chunk("fmt ", format)).padTo(size, 0x01).take();
}

Bytes plainFormat() {
    return waveFormat(1, 2, 44100, 176400);
}

const SampleSet kImages = {
    {"image_jpeg_baseline", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xE0, 14), jpegFrame(0xC0, 8, 48, 64, 3)});
     }},
    {"image_jpeg_progressive_sof2", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xE1, 30), jpegFrame(0xC2, 8, 600, 800, 3)});
     }},
    {"image_jpeg_lossless_sof3_12_bit_grey", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xE0, 14), jpegFrame(0xC3, 12, 100, 200, 1)});
     }},
    {"image_jpeg_frame_right_behind_soi", Kind::Good,
     [] { return jpeg({jpegFrame(0xC1, 8, 33, 44, 4)}); }},
    {"image_jpeg_restart_class_behind_soi", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xDB, 20), jpegFrame(0xC0, 8, 5, 6, 3)});
     }},
    {"image_jpeg_only_sof9_is_refused", Kind::Refused,
     [] {
         return jpeg({jpegSegment(0xE0, 14), jpegFrame(0xC9, 8, 48, 64, 3)});
     }},
    {"image_jpeg_fixed_layout_fallback", Kind::Good,
     [] {
         return Builder().u8(0xFF).u8(0xD8).be16(0x0010).be16(0x0020).u8(3).padTo(64, 9).take();
     }},
    {"image_jpeg_comment_behind_soi_is_fallback", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xFE, 14), jpegFrame(0xC0, 8, 48, 64, 3)});
     }},
    {"image_jpeg_segment_past_end_is_refused", Kind::Refused,
     [] {
         return Builder().bytes({0xFF, 0xD8, 0xFF, 0xE0, 0xFF, 0xFF}).padTo(128, 0xAA).take();
     }},
    {"image_jpeg_frame_in_last_15_bytes_is_refused", Kind::Refused,
     [] {
         Bytes bytes = jpeg({jpegSegment(0xE0, 100), jpegFrame(0xC0, 8, 48, 64, 1)});
         bytes.resize(2 + 104 + 15);
         return bytes;
     }},
    {"image_jpeg_frame_in_last_16_bytes", Kind::Good,
     [] {
         Bytes bytes = jpeg({jpegSegment(0xE0, 100), jpegFrame(0xC0, 8, 48, 64, 1)});
         bytes.resize(2 + 104 + 16);
         return bytes;
     }},
    {"image_jpeg_restart_marker_is_read_with_a_length", Kind::Good,
     [] {
         return jpeg({jpegSegment(0xE0, 14),
                      {0xFF, 0xD0, 0x00, 0x04, 0x11, 0x11},
                      jpegFrame(0xC0, 8, 48, 64, 3)});
     }},
    {"image_jpeg_no_marker_between_segments_is_refused", Kind::Refused,
     [] {
         return jpeg({jpegSegment(0xE0, 14), {0, 0, 0, 0}, jpegFrame(0xC0, 8, 1, 1, 3)});
     }},
    {"image_png_of_64_bytes", Kind::Good, [] { return png(640, 480, 8, 64); }},
    {"image_png_of_63_bytes_is_refused", Kind::Refused, [] { return png(640, 480, 8, 63); }},
    {"image_png_16_bit_depth_is_per_channel", Kind::Good, [] { return png(70000, 3, 16, 90); }},
    {"image_png_without_ihdr_is_refused", Kind::Refused,
     [] {
         Bytes bytes = png(640, 480, 8, 90);
         bytes[15] = 'X';
         return bytes;
     }},
    {"image_png_wrong_signature_is_refused", Kind::Refused,
     [] {
         Bytes bytes = png(640, 480, 8, 90);
         bytes[7] = 0x0D;
         return bytes;
     }},
    {"image_gif_packed_f7_is_8_bits", Kind::Good, [] { return gif(0xF7); }},
    {"image_gif_packed_80_is_1_bit", Kind::Good, [] { return gif(0x80); }},
    {"image_gif_of_unknown_version", Kind::Good,
     [] {
         Bytes bytes = gif(0x70);
         bytes[3] = 'x';
         return bytes;
     }},
    {"image_bmp_24_bits", Kind::Good, [] { return bmp(480, 24); }},
    {"image_bmp_top_down_keeps_its_negative_height", Kind::Good,
     [] { return bmp(0xFFFFFE20, 32); }},
    {"image_unknown_bytes_keep_the_file_size", Kind::Refused, [] { return Bytes(200, 0x42); }},
};

const SampleSet kWaves = {
    {"wave_pcm_stereo", Kind::Good, [] { return wave(plainFormat(), 12, 6000); }},
    {"wave_of_2048_bytes", Kind::Good, [] { return wave(plainFormat(), 12, 2048); }},
    {"wave_of_2047_bytes_is_refused", Kind::Refused, [] { return wave(plainFormat(), 12, 2047); }},
    {"wave_fmt_at_2023", Kind::Good, [] { return wave(plainFormat(), 2023, 4096); }},
    {"wave_fmt_at_2024_is_refused", Kind::Refused, [] { return wave(plainFormat(), 2024, 4096); }},
    {"wave_fmt_at_2023_of_2049_bytes_cut_by_the_end", Kind::Good,
     [] {
         Bytes bytes = wave(plainFormat(), 2023, 4096);
         bytes.resize(2049);
         return bytes;
     }},
    {"wave_bit_rate_wraps_at_32_bits", Kind::Good,
     [] { return wave(waveFormat(0xFFFE, 8, 192000, 0x20000001), 12, 4096); }},
    {"wave_without_bit_rate_has_no_duration", Kind::Good,
     [] { return wave(waveFormat(0x55, 2, 48000, 0), 12, 4096); }},
    {"wave_of_mpeg_frames_stays_wave", Kind::Good,
     [] {
         Bytes bytes = wave(waveFormat(0x50, 2, 48000, 24000), 12, 4096);
         for (std::size_t at = 44; at + 4 < bytes.size(); at += 4) {
             bytes[at] = 0xFF;
             bytes[at + 1] = 0xFB;
         }
         return bytes;
     }},
    {"wave_without_fmt_is_refused", Kind::Refused,
     [] { return Builder().text("RIFF").le32(0).text("WAVE").padTo(4096, 3).take(); }},
    {"riff_of_another_form_is_refused", Kind::Refused,
     [] { return Builder().text("RIFF").le32(0).text("ACON").padTo(4096, 3).take(); }},
};

}  // namespace
}  // namespace probe_test
