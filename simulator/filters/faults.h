// Misbehaviour on command: DWORD values under HKEY_CURRENT_USER\Software\HeadUnit\Faults, read
// when a filter is created or connected. A missing value is 0: the unit behaves.
//
//   RenderResult              a failing HRESULT: RenderFile returns it for every recording
//   NoAudioRenderer           1: the sound streams of the file are not offered
//   NotConnectedAudio         1: the audio-stream query answers VFW_E_NOT_CONNECTED
//   NoVideoRenderer           1: the picture of the file is not offered
//   SecondNameOnly            1: the video renderer is there under its second name only
//   NullDecoder               1: the chip has no video decoder at all
//   LeakReference             1: the demultiplexer keeps a reference to its graph for ever
//   ReadFailAfterBytes        reads fail once so many bytes were read; 0 means never
//   ReadDelayMilliseconds     every read takes at least this long
//   LiveLength                seconds; nonzero: the file counts as still being recorded, and this
//                             is announced as its new length after two seconds
//   ReopenFails               1: a recording that has grown cannot be opened again
//                             2: and the splitter is lost over it
#pragma once

#include "simulator/tape/faults.h"

namespace filters {

using tape::fault;

}  // namespace filters
