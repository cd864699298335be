// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/RenderCommand.h"

#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/plot/TRenderPlot.h"
#include "tools/vortel2/render/TProgressBar.h"
#include "tools/vortel2/render/TRenderer.h"
#include "tools/vortel2/sound/DemoLoop.h"

#include <filesystem>
#include <memory>

namespace {

constexpr std::size_t kCopyFrames = 4096;

void WriteDryLoop(const std::string& path, ESampleFormat format) {
	TMemorySource loop(MakeDemoLoop());
	TSoundFileWriter writer(path, loop.SampleRate(), format, loop.Frames());
	std::vector<float> left(kCopyFrames);
	std::vector<float> right(kCopyFrames);
	while (const std::size_t frames = loop.Read(left, right))
		writer.Write({left.data(), frames}, {right.data(), frames});
	writer.Commit();
}

std::string Name(const std::string& path) {
	return std::filesystem::path(path).filename().string();
}

std::unique_ptr<TRenderPlot> MakePlot(
    const TInstance& instance, const TRenderOptions& options, const TSoundSource& source, const std::string& output) {
	if (options.mPlot.empty())
		return nullptr;
	const TRenderPlot::TTitle title{options.mInput.empty() ? "demo loop" : Name(options.mInput), Name(output)};
	return instance.WithDocument([&](TVortelDocument& document) {
		return std::make_unique<TRenderPlot>(
		    options.mPlot, title, document, instance.Engine(), source.SampleRate(), source.Frames());
	});
}

void Process(
    const TInstance& instance, const TRenderOptions& options, const std::vector<TMidiFileEvent>& midiFile,
    TSoundSource& input, const std::string& output) {
	TTailSource source(input, options.mTail);
	const std::unique_ptr<TRenderPlot> plot = MakePlot(instance, options, source, output);
	TSoundFileWriter writer(output, source.SampleRate(), options.mFormat, source.Frames());
	TEventList events(source.SampleRate());
	events.AddAutomation(options.mAutomation);
	events.AddNotes(options.mNotes);
	events.AddFile(midiFile);
	TProgressBar progress(source.Frames(), options.mQuiet);
	TRenderer(instance.Shell(), options, events, source, writer, plot.get()).Run(progress);
	if (plot)
		plot->Draw();
	writer.Commit();
	if (plot)
		plot->Commit();
}

} // namespace

void RunRender(const TRenderOptions& options) {
	options.CheckFiles();
	// The settings first: a wrong name is bad usage, whatever may be wrong with the files.
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { options.mSettings.ApplyTo(document); });
	std::vector<TMidiFileEvent> midiFile;
	if (!options.mMidiFile.empty())
		midiFile = ReadMidiFile(options.mMidiFile);

	if (!options.mDemoDryOutput.empty())
		WriteDryLoop(options.mDemoDryOutput, options.mFormat);
	if (!options.mDemoOutput.empty()) {
		TMemorySource loop(MakeDemoLoop());
		Process(instance, options, midiFile, loop, options.mDemoOutput);
	}
	if (!options.mInput.empty()) {
		TSoundFileReader file(options.mInput);
		Process(instance, options, midiFile, file, options.mOutput);
	}
}
