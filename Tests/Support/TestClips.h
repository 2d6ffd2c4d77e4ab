#pragma once

#include "Patience.h"
#include "TestPaths.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QSize>
#include <QtCore/QStringList>
#include <QtCore/QUuid>
#include <QtCore/QVector>
#include <QtCore/QtEndian>
#include <QtTest/QTest>

#include <algorithm>

/**
 * Clips for tests, made with the ffmpeg command when a test first asks for one and kept in the build tree.
 *
 * Test programs may run side by side, so a clip is made under a name of its own and renamed when it is
 * complete.
 */
class TestClips
{
public:
    /** Returns the path of the clip @p name that ffmpeg writes given @p arguments, or nothing where it fails.
     */
    static QString make(const QString &name, const QStringList &arguments)
    {
        QString path = folder().filePath(name);
        if (QFileInfo::exists(path))
            return path;
        const QString unfinished = unfinishedPath(name);
        QProcess ffmpeg;
        ffmpeg.start("ffmpeg",
                     QStringList{"-v", "error", "-nostdin", "-y"} + arguments + QStringList{unfinished});
        if (!ffmpeg.waitForFinished(60000) || ffmpeg.exitCode() != 0) {
            qWarning() << "ffmpeg could not make" << name << ":" << ffmpeg.readAllStandardError();
            return {};
        }
        return publish(unfinished, path);
    }

    /** Returns the path of a file @p name that holds @p content. */
    static QString write(const QString &name, const QByteArray &content)
    {
        const QString unfinished = unfinishedPath(name);
        QFile file(unfinished);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        file.close();
        return publish(unfinished, folder().filePath(name));
    }

    /** Returns the content of the file at @p path. */
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /** Returns the arguments for @p frames pictures of a moving test picture of @p size at @p rate, encoded
     * as @p codec. */
    static QStringList moving(const QString &size, int frames, const QStringList &codec,
                              const QString &rate = "25")
    {
        const QString input = QString("testsrc2=size=%1:rate=%2").arg(size, rate);
        return QStringList{"-f", "lavfi", "-i", input, "-frames:v", QString::number(frames)} + codec;
    }

    static QString h264()
    {
        return make("h264.mp4",
                    moving("160x120", 12, {"-c:v", "libx264", "-bf", "0", "-g", "4", "-pix_fmt", "yuv420p"}));
    }

    static QString h264WithBFrames()
    {
        return make("h264-b.mp4",
                    moving("160x120", 30, {"-c:v", "libx264", "-bf", "3", "-pix_fmt", "yuv420p"}));
    }

    static QString vp8()
    {
        return make("vp8.webm", moving("160x120", 10, {"-c:v", "libvpx", "-auto-alt-ref", "1"}));
    }

    static QString vp9()
    {
        return make("vp9.webm", moving("160x120", 10, {"-c:v", "libvpx-vp9", "-pix_fmt", "yuv420p"}));
    }

    static QString av1()
    {
        return make("av1.webm",
                    moving("160x120", 10, {"-c:v", "libaom-av1", "-cpu-used", "8", "-pix_fmt", "yuv420p"}));
    }

    static QString gif() { return make("animation.gif", moving("160x120", 10, {"-c:v", "gif"})); }

    static QString mpeg4() { return make("mpeg4.avi", moving("160x120", 15, {"-c:v", "mpeg4", "-bf", "2"})); }

    /** A width that the vectors of a scaler do not divide. */
    static QString unevenWidth()
    {
        return make("uneven.mp4", moving("360x200", 60, {"-c:v", "libx264", "-pix_fmt", "yuv420p"}));
    }

    static QString oddSize()
    {
        return make("odd.mkv",
                    moving("160x90", 5, {"-vf", "scale=161:91", "-c:v", "ffv1", "-pix_fmt", "yuv444p"}));
    }

    static QString onePixel()
    {
        return make("pixel.mkv",
                    {"-f", "lavfi", "-i", "color=c=0x20A040:size=16x16:rate=25", "-frames:v", "2", "-vf",
                     "format=bgr0,crop=1:1", "-c:v", "ffv1", "-pix_fmt", "bgr0"});
    }

    /** Fifteen pictures of nothing but @p colour. */
    static QString plain(const QString &colour)
    {
        return make(colour + ".mp4",
                    {"-f", "lavfi", "-i", QString("color=c=%1:size=64x48:rate=25").arg(colour), "-frames:v",
                     "15", "-c:v", "libx264", "-pix_fmt", "yuv420p"});
    }

    /** A clip @p name of raw pixels: @p pictures one after the other, each of @p size in @p format. */
    static QString raw(const QString &name, const QString &format, const QSize &size,
                       const QByteArray &pictures)
    {
        const QString pixels = write(name + ".raw", pictures);
        return make(name,
                    {"-f", "rawvideo", "-pix_fmt", format, "-s",
                     QString("%1x%2").arg(size.width()).arg(size.height()), "-r", "25", "-i", pixels, "-c:v",
                     "rawvideo", "-pix_fmt", format, "-f", "nut"});
    }

    /** Five pictures of one colour, then five of another. */
    static QString still()
    {
        const int bytes = 64 * 48 * 3;
        return raw("still.nut", "bgr24", QSize(64, 48),
                   QByteArray(bytes * 5, char(200)) + QByteArray(bytes * 5, char(50)));
    }

    /** Pairs of pictures of @p bytes bytes: the first all alike, the second with one byte of another value.
     */
    static QString withOneByteChanged(const QString &format, const QSize &size, int bytes)
    {
        QByteArray pictures(bytes * bytes * 2, char(100));
        for (int i = 0; i < bytes; ++i)
            pictures[(2 * i + 1) * bytes + i] = char(160);
        return raw("changed-" + format + ".nut", format, size, pictures);
    }

    /** All colours of 4:2:0 pictures, of which a block of four pixels shares one. */
    static QString everyColour()
    {
        constexpr int side = 1024;
        QByteArray pictures;
        for (int i = 0; i < 16; ++i) {
            QByteArray luma(side * side, '\0');
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x)
                    luma[y * side + x] = char(16 * i + 4 * (y / 512 * 2 + x / 512) + y % 2 * 2 + x % 2);
            }
            QByteArray blue(side * side / 4, '\0');
            QByteArray red(blue);
            for (int at = 0; at < blue.size(); ++at) {
                blue[at] = char(at % 512);
                red[at] = char(at / 512);
            }
            pictures += luma + blue + red;
        }
        return raw("colours.nut", "yuv420p", QSize(side, side), pictures);
    }

    /** Five pictures of @p width by 96 pixels, of the usual kind. */
    static QString ofWidth(int width)
    {
        return make(QString("width-%1.mp4").arg(width),
                    moving(QString("%1x96").arg(width), 5, {"-c:v", "libx264", "-pix_fmt", "yuv420p"}));
    }

    static QString onePicture() { return make("picture.mkv", moving("64x48", 1, {"-c:v", "ffv1"})); }

    static QString large()
    {
        return make(
            "large.mp4",
            moving("4096x2160", 3, {"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p"}));
    }

    static QString bt709()
    {
        return make("bt709.mp4",
                    moving("160x120", 5,
                           {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-colorspace", "bt709",
                            "-color_primaries", "bt709", "-color_trc", "bt709"}));
    }

    /** Key pictures at 0, 10 and 20 of 30. */
    static QString rareKeyPictures()
    {
        return make(
            "rare-key-pictures.mp4",
            moving("160x120", 30,
                   {"-c:v", "libx264", "-bf", "0", "-g", "10", "-sc_threshold", "0", "-pix_fmt", "yuv420p"}));
    }

    /** A picture every two seconds. */
    static QString slow()
    {
        return make("slow.avi", moving("64x48", 3, {"-c:v", "mpeg4", "-g", "1"}, "1/2"));
    }

    /** Five pictures of 160 by 120 pixels, then five of 128 by 96, all of a named colour matrix. */
    static QString changedSize()
    {
        const QStringList codec{
            "-c:v",  "libx264",          "-bf",   "0",          "-pix_fmt", "yuv420p", "-colorspace",
            "bt709", "-color_primaries", "bt709", "-color_trc", "bt709"};
        const QString large = make("size-large.h264", moving("160x120", 5, codec));
        const QString small = make("size-small.h264", moving("128x96", 5, codec));
        return write("changed-size.h264", read(large) + read(small));
    }

    /** Five pictures of H.264 without a container, which a stream may go on with. */
    static QString part(const QString &name, const QStringList &options)
    {
        return make("part-" + name + ".h264", moving("160x120", 5, QStringList{"-c:v", "libx264"} + options));
    }

    static QString audioOnly()
    {
        return make("audio.wav", {"-f", "lavfi", "-i", "sine=duration=0.2", "-c:a", "pcm_s16le"});
    }

    static QString withAudio()
    {
        return make("audio-video.mkv",
                    {"-f", "lavfi", "-i", "sine=duration=1", "-f", "lavfi", "-i",
                     "testsrc2=size=64x48:rate=25", "-frames:v", "20", "-c:v", "mpeg4", "-c:a", "pcm_s16le"});
    }

    static QString empty() { return write("empty.mp4", {}); }

    /** An MPEG-4 clip cut off in the middle of a picture. */
    static QString truncated()
    {
        const QByteArray whole = read(mpeg4());
        return write("truncated.avi", whole.left(whole.size() / 2));
    }

    /** The head of a clip before so many zeros that looking for its streams takes many seconds. The file is
     * sparse. */
    static QString slowToOpen()
    {
        const QString path = write("slow-to-open.mkv", read(oddSize()).left(600));
        return QFile::resize(path, Q_INT64_C(8) << 30) ? path : QString();
    }

    /** A clip of a known container whose codec is none that exists. */
    static QString unknownCodec()
    {
        QByteArray clip = read(mpeg4());
        return write("unknown.avi", clip.replace("FMP4", "Zz#9"));
    }

    /** A clip whose codec exists but lacks the headers that its decoder cannot start without. */
    static QString missingCodecHeaders()
    {
        QByteArray clip = read(mpeg4());
        return write("headers.avi", clip.replace("FMP4", "theo"));
    }

    /** A clip of which every picture is damaged beyond decoding. */
    static QString damagedPictures()
    {
        const QString whole = make("whole.avi", moving("64x48", 5, {"-c:v", "ffv1", "-pix_fmt", "yuv444p"}));
        QByteArray clip = read(whole);
        for (int at = clip.indexOf("00dc", clip.indexOf("movi")); at >= 0;
             at = clip.indexOf("00dc", at + 4)) {
            const auto size = qFromLittleEndian<quint32>(clip.constData() + at + 4);
            if (at + 8 + qint64(size) > clip.size() || clip.indexOf("idx1") < at)
                break;
            std::fill_n(clip.begin() + at + 8, size, char(0xFF));
        }
        return write("damaged.avi", clip);
    }

    /** The head of a clip, which describes its pictures, without any of them; alone or beside sound. */
    static QString withoutPictures(bool besideSound)
    {
        QStringList sound{"-f", "lavfi", "-i", "sine=duration=0.2"};
        if (!besideSound)
            sound.clear();
        const QString whole = make(
            besideSound ? "whole-sound.mov" : "whole.mov",
            sound + moving("64x48", 5, {"-c:v", "libx264", "-c:a", "pcm_s16le", "-movflags", "+faststart"}));
        const QByteArray clip = read(whole);
        return write(besideSound ? "no-pictures-sound.mov" : "no-pictures.mov",
                     clip.left(clip.indexOf("mdat") + 4));
    }

    /** A transport stream of nothing but padding. */
    static QString paddingOnly()
    {
        const QByteArray packet = QByteArray("\x47\x1F\xFF\x10", 4).leftJustified(188, '\xFF');
        return write("padding.ts", packet.repeated(100));
    }

    /** A clip whose container claims pictures of @p width by @p height pixels. */
    static QString claimingSize(int width, int height)
    {
        const QString original =
            make("raw.avi", moving("64x48", 3, {"-c:v", "rawvideo", "-pix_fmt", "bgr24", "-vtag", "RGB "}));
        QByteArray clip = read(original);
        // The bitmap header of the stream: its size, then width and height of the picture.
        const int header = clip.indexOf("strf") + 8;
        qToLittleEndian<qint32>(width, clip.data() + header + 4);
        qToLittleEndian<qint32>(height, clip.data() + header + 8);
        return write(QString("claims-%1x%2.avi").arg(width).arg(height), clip);
    }

    /** An MPEG-2 stream of which some pictures ask for a field to be shown again. */
    static QString repeatedFields()
    {
        const QString plain =
            make("plain.m2v", moving("64x48", 8, {"-c:v", "mpeg2video", "-bf", "0", "-g", "4"}));
        QByteArray stream = read(plain);
        // The picture coding extension; its repeat_first_field flag counts in progressive pictures of a
        // stream that is not a progressive sequence.
        const QByteArray extension("\x00\x00\x01\xB5", 4);
        int pictures = 0;
        for (int at = stream.indexOf(extension); at >= 0; at = stream.indexOf(extension, at + 4)) {
            const int kind = uchar(stream.at(at + 4)) >> 4;
            if (kind == 1)
                stream[at + 5] = char(stream.at(at + 5) & ~0x08);
            if (kind == 8 && pictures++ % 2)
                stream[at + 7] = char(stream.at(at + 7) | 0x02);
        }
        return write("repeated.m2v", stream);
    }

    /** Returns how many extra fields each picture of the clip at @p path asks for. */
    static QVector<int> repeatsOf(const QString &path)
    {
        QProcess ffprobe;
        ffprobe.start("ffprobe",
                      {"-v", "error", "-select_streams", "v:0", "-show_entries", "frame=repeat_pict", "-of",
                       "csv=p=0", path});
        ffprobe.waitForFinished(60000);
        QVector<int> repeats;
        for (const QByteArray &line : ffprobe.readAllStandardOutput().split('\n')) {
            if (!line.trimmed().isEmpty())
                repeats << line.trimmed().split(',').first().toInt();
        }
        return repeats;
    }

    static QDir folder()
    {
        QDir dir(TestPaths::built("Tests/clips"));
        dir.mkpath(".");
        return dir;
    }

private:
    static QString unfinishedPath(const QString &name)
    {
        return folder().filePath(QUuid::createUuid().toString(QUuid::WithoutBraces) + '-' + name);
    }

    static QString publish(const QString &unfinished, const QString &path)
    {
        QFile::remove(path);
        if (!QFile::rename(unfinished, path))
            QFile::remove(unfinished);
        return QFileInfo::exists(path) ? path : QString();
    }
};
