// MPEG-1 system streams and MPEG-2 program streams: clocks, packets of every kind, VideoCD.
#include "build_audio.h"
#include "build_mpegps.h"

namespace probe_test {
namespace {

using namespace ps;

constexpr std::uint64_t kSecond = 90'000;

constexpr audio::Frame kLayer2 = {.layer = 2, .bitRate = 10, .sampleRate = 1, .bytes = 576};

Bytes mpegFrame() {
    return audio::frame(kLayer2);
}
Bytes mpegAudio() {
    return audio::frames(3, kLayer2);
}

// An MPEG-2 stream of one video packet and what else is given, 10 s long.
Bytes mpeg2(const Bytes& more, const Sequence& s = {}) {
    return file(
        join({pack2(kSecond), packet2(0xE0, join({sequence(s), extension(), pictures()})), more}),
        pack2(11 * kSecond));
}

// Stretches of packs, `ticks` apart, each stretch beginning where `starts` says.
Bytes stretches(std::initializer_list<std::uint64_t> starts, std::uint64_t ticks,
                std::uint64_t packs = 200) {
    Builder builder;
    builder.bytes(pack2(*starts.begin()))
        .bytes(packet2(0xE0, join({sequence({}), extension(), pictures()})))
        .bytes(packet2(0xC0, mpegAudio()));
    for (const std::uint64_t start : starts) {
        for (std::uint64_t i = 0; i < packs; ++i) {
            builder.bytes(pack2(start + i * ticks)).fill(2030, 0x55);
        }
    }
    return builder.take();
}

const SampleSet kMpegPsSamples = {
    {"mpegps_mpeg1_system_stream", Kind::Good,
     [] {
         return file(
             join({pack1(0), systemHeader({0xE0}), packet1(0xE0, join({sequence({}), pictures()})),
                   pack1(kSecond), systemHeader({0xC0}), packet1(0xC0, mpegAudio())}),
             pack1(90 * kSecond + 1));
     }},
    {"mpegps_mpeg2_program_stream", Kind::Good,
     [] {
         return file(join({pack2(kSecond, 299, 3), systemHeader({0xE0, 0xBD}),
                           packet2(0xE0,
                                   join({sequence({.width = 720, .height = 576, .aspect = 3}),
                                         extension(), pictures()}),
                                   3),
                           packet2(0xBD, subStream(0x80, ac3Frame()), 2)}),
                     pack2(61 * kSecond));
     }},
    {"mpegps_aspect_4_to_3", Kind::Good, [] { return mpeg2({}, {.aspect = 2}); }},
    {"mpegps_aspect_211_to_100", Kind::Good, [] { return mpeg2({}, {.aspect = 4}); }},
    {"mpegps_aspect_code_5_is_unknown", Kind::Good, [] { return mpeg2({}, {.aspect = 5}); }},
    {"mpegps_layer_3_has_the_tag_of_layer_2", Kind::Good,
     [] { return mpeg2(packet2(0xC3, audio::frames(3))); }},
    {"mpegps_ac3_with_five_channels_and_bass", Kind::Good,
     [] {
         return mpeg2(packet2(0xBD, subStream(0x87, Builder()
                                                        .fill(9)
                                                        .bytes([] {
                                                            Bytes frame = ac3Frame(28, 1, 7);
                                                            frame[6] =
                                                                0xE1;  // the bass bit is the last
                                                            return frame;
                                                        }())
                                                        .take())));
     }},
    {"mpegps_pcm_of_one_channel", Kind::Good,
     [] { return mpeg2(packet2(0xBD, subStream(0xA0, pcm(1, 1)))); }},
    {"mpegps_pcm_of_six_channels_is_told_as_two", Kind::Good,
     [] { return mpeg2(packet2(0xBD, subStream(0xAF, pcm(0, 6)))); }},
    {"mpegps_dts_is_no_known_sound", Kind::Good,
     [] { return mpeg2(packet2(0xBD, subStream(0x88, ac3Frame()))); }},
    {"mpegps_first_sound_is_described", Kind::Good,
     [] {
         return mpeg2(
             join({packet2(0xBD, subStream(0xA0, pcm(0, 2))), packet2(0xC0, mpegAudio())}));
     }},
    {"mpegps_one_frame_per_packet_is_enough", Kind::Good,
     [] { return mpeg2(packet2(0xC0, mpegFrame())); }},
    {"mpegps_one_frame_per_packet_before_ac3", Kind::Good,
     [] {
         return mpeg2(
             join({packet2(0xC0, mpegFrame()), packet2(0xBD, subStream(0x80, ac3Frame()))}));
     }},
    {"mpegps_one_frame_per_packet_before_a_second_stream", Kind::Good,
     [] {
         return mpeg2(join(
             {packet2(0xC0, mpegFrame()),
              packet2(0xC1, audio::frames(
                                3, {.layer = 2, .bitRate = 14, .sampleRate = 1, .bytes = 1152})),
              packet2(0xC0, mpegFrame())}));
     }},
    {"mpegps_chance_sync_word_before_the_frames", Kind::Good,
     [] {
         // What looks like a header of layer III at 32 kHz begins the stream's first packet.
         const Bytes chance = Builder().be32(0xFFFB9800).fill(60, 0x33).take();
         return mpeg2(
             join({packet2(0xC0, chance), packet2(0xC0, mpegFrame()), packet2(0xC0, mpegAudio())}));
     }},
    {"mpegps_sound_that_no_system_header_lists", Kind::Good,
     [] {
         return file(join({pack2(kSecond), systemHeader({0xE0}),
                           packet2(0xE0, join({sequence({}), extension(), pictures()})),
                           pack2(2 * kSecond), systemHeader({0xE0}), packet2(0xC0, mpegAudio())}),
                     pack2(11 * kSecond));
     }},
    {"mpegps_silent_by_its_system_header", Kind::Good,
     [] {
         return file(join({pack2(kSecond), systemHeader({0xE0}),
                           packet2(0xE0, join({sequence({}), extension(), pictures()}))}),
                     pack2(11 * kSecond));
     }},
    {"mpegps_sequence_header_across_packets", Kind::Good,
     [] {
         const Bytes whole = join({sequence({.width = 704}), extension(), pictures()});
         const auto at = whole.begin() + 2;
         return file(join({pack2(0), packet2(0xE0, {whole.begin(), at}),
                           packet2(0xE1, join({sequence({.width = 16}), pictures()})),
                           packet2(0xE0, {at, at + 5}), packet2(0xE0, {at + 5, whole.end()})}),
                     pack2(kSecond));
     }},
    {"mpegps_extension_widens_the_fields", Kind::Good,
     [] {
         return file(join({pack2(0), packet2(0xE0, join({sequence({.rate = 5}),
                                                         extension(1, 2, 1, 1, 0), pictures()}))}));
     }},
    {"mpegps_packet_without_a_length", Kind::Good,
     [] {
         Bytes packet = packet2(0xE0, join({sequence({}), extension(), pictures()}));
         packet[4] = packet[5] = 0;
         return file(join({pack2(0), packet, packet2(0xC0, mpegAudio())}), pack2(kSecond));
     }},
    {"mpegps_mpeg1_clock_without_its_marker", Kind::Good,
     [] {
         return file(join({withoutMarker(pack1(0)), pack1(kSecond),
                           packet1(0xE0, join({sequence({}), pictures()}))}),
                     pack1(4 * kSecond));
     }},
    {"mpegps_mpeg2_clock_without_its_marker", Kind::Good,
     [] {
         return file(join({withoutMarker(pack2(0)),
                           packet2(0xE0, join({sequence({}), extension(), pictures()}))}),
                     pack2(4 * kSecond));
     }},
    {"mpegps_last_mpeg1_pack_without_its_marker", Kind::Good,
     [] {
         return file(join({pack1(0), packet1(0xE0, join({sequence({}), pictures()})),
                           packet1(0xC0, mpegAudio()), pack1(4 * kSecond)}),
                     join({withoutMarker(pack1(9 * kSecond)), Bytes(100, 0xFF)}));
     }},
    {"mpegps_last_mpeg2_packs_without_their_markers", Kind::Good,
     [] {
         // The first of the two stands where the search's first window begins.
         constexpr std::size_t kWindow = 4096 - 10;
         return file(join({pack2(0), packet2(0xE0, join({sequence({}), extension(), pictures()})),
                           packet2(0xC0, mpegAudio()), pack2(4 * kSecond)}),
                     Builder()
                         .bytes(withoutMarker(pack2(9 * kSecond)))
                         .padTo(kWindow - 200, 0x55)
                         .bytes(withoutMarker(pack2(10 * kSecond)))
                         .padTo(kWindow, 0x55)
                         .take());
     }},
    {"mpegps_last_pack_of_a_file_that_is_walked_whole", Kind::Good,
     [] {
         return file(join({pack2(0), packet2(0xE0, join({sequence({}), extension(), pictures()})),
                           pack2(4 * kSecond)}),
                     withoutMarker(pack2(9 * kSecond)));
     }},
    {"mpegps_forbidden_time_stamp_flags_in_every_stream", Kind::Good,
     [] {
         Builder builder;
         for (unsigned stream = 0xBC; stream <= 0xFF; ++stream) {
             builder.bytes(packet2(stream, Bytes(9, 0x22), 1));
         }
         return mpeg2(join({builder.view(), packet2(0xC0, mpegAudio())}));
     }},
    {"mpegps_forbidden_time_stamp_flags", Kind::Good,
     [] { return mpeg2(packet2(0xC0, mpegAudio(), 1)); }},
    {"mpegps_without_video_fails", Kind::Claimed,
     [] {
         return file(join({pack2(0), packet2(0xC0, mpegAudio())}), pack2(kSecond));
     }},
    {"mpegps_single_pack_has_no_duration", Kind::Good,
     [] {
         return file(
             join({pack2(kSecond), packet2(0xE0, join({sequence({}), extension(), pictures()}))}));
     }},
    {"mpegps_clock_wraps_at_33_bits", Kind::Good,
     [] {
         return stretches({(std::uint64_t{1} << 33) - 100 * 9000, 100 * 9000}, 9000);
     }},
    {"mpegps_clock_starts_again", Kind::Good,
     [] {
         return stretches({kSecond, 0, 5 * kSecond}, 9000);
     }},
    {"mpegps_clock_leaps_an_hour", Kind::Good,
     [] {
         return stretches({0, 3600 * kSecond}, 9000);
     }},
    {"mpegps_hole_before_a_new_start", Kind::Good,
     [] {
         // Found by fuzzing: every pack before the hole had the whole hole searched.
         Builder builder;
         builder.bytes(stretches({kSecond}, 9000, 71)).fill(210'000, 0x55);
         return builder.bytes(pack2(0)).fill(2030, 0x55).bytes(pack2(9000)).take();
     }},
    {"mpegps_end_codes_with_a_byte_between", Kind::Good,
     [] {
         // A start code, then a byte that is none: the way to the next code is one byte long.
         Builder builder;
         builder.bytes(pack2(0)).bytes(
             packet2(0xE0, join({sequence({}), extension(), pictures()})));
         while (builder.size() < kSmallest) {
             builder.be32(0x1B9).u8(0x55);
         }
         return builder.take();
     }},
    {"mpegps_pack_in_the_last_four_bytes_of_the_head", Kind::Good,
     [] { return Builder().fill(252, 0x55).bytes(mpeg2({})).take(); }},
    {"mpegps_pack_behind_the_head_is_refused", Kind::Refused,
     [] { return Builder().fill(253, 0x55).bytes(mpeg2({})).take(); }},
    {"mpegps_videocd_sectors", Kind::Good,
     [] {
         const auto sector = [](const Bytes& content) {
             return Builder()
                 .u8(0)
                 .fill(10, 0xFF)
                 .u8(0)
                 .be32(0x00020002)
                 .be64(0x0160'6000'0160'6000)
                 .bytes(content)
                 .padTo(2352 - 4, 0)
                 .be32(0xA1B2C3D4)
                 .take();
         };
         return file(
             join({Builder().text("RIFF").le32(kSmallest - 8).text("CDXAfmt ").fill(28).take(),
                   sector({}), sector({}),
                   sector(join({pack1(0), packet1(0xE0, join({sequence({}), pictures()}))})),
                   sector(join({pack1(kSecond), packet1(0xC0, mpegAudio())}))}),
             sector(pack1(20 * kSecond)));
     }},
    {"mpegps_one_byte_below_256_kib_is_refused", Kind::Refused,
     [] {
         Bytes bytes = mpeg2({});
         bytes.pop_back();
         return bytes;
     }},
};

}  // namespace
}  // namespace probe_test
