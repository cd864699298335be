// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/commands/RenderCommand.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/values/TRandom.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/files/TNotices.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/Nearest.h"
#include "tools/vortel2/plot/TRenderPlot.h"
#include "tools/vortel2/render/TProgressBar.h"
#include "tools/vortel2/render/TRenderer.h"
#include "tools/vortel2/render/WhyUnchanged.h"
#include "tools/vortel2/sound/DemoLoop.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::size_t kCopyFrames = 4096;

void WriteDryLoop(const std::string& path, TSoundFormat format) {
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

bool IsNoteOn(const TMidiFileEvent& event) {
	return (event.mStatus & 0xf0) == 0x90 && event.mData2 > 0;
}

/// What the same options give for every sound.
struct TPlan {
	std::vector<TAutomation> mAutomation;
	std::vector<TMidiFileEvent> mMidiFile;
	TTempoMap mTempi;
	std::string mWhyUnchanged;
	TStream mSaved; // for --save

	TPlan(const TInstance& instance, const TRenderOptions& options);
};

TTempoMap TempiOf(const TRenderOptions& options) {
	TTempoMap tempi{options.mTempo, {}};
	if (!options.mHasMidiTempo)
		return tempi;
	for (const TMidiTempo& tempo : ReadMidiTempi(options.mMidiFile)) {
		const auto beats =
		    static_cast<float>(std::clamp(tempo.mBeatsPerMinute, TRenderOptions::kSlowest, TRenderOptions::kFastest));
		if (tempo.mSeconds <= 0.0)
			tempi.mStart = beats;
		else
			tempi.mChanges.push_back({THostTransport::EChange::kTempo, tempo.mSeconds, beats, true});
	}
	return tempi;
}

TPlan::TPlan(const TInstance& instance, const TRenderOptions& options) {
	instance.WithDocument([&](TVortelDocument& document) {
		for (const TAutomationSetting& setting : options.mAutomation)
			mAutomation.push_back(setting.Resolve(document));
	});
	if (!options.mMidiFile.empty())
		mMidiFile = ReadMidiFile(options.mMidiFile);
	mTempi = TempiOf(options);
	const bool hasNotes = !options.mNotes.empty() || std::any_of(mMidiFile.begin(), mMidiFile.end(), &IsNoteOn);
	instance.WithDocument([&](TVortelDocument& document) {
		mWhyUnchanged = WhyUnchanged(document, options, hasNotes);
		if (!options.mSave.empty())
			mSaved = DocumentFiles::Saved(document, options.mSave);
	});
}

bool HasSettings(TVortelScene& scene, int32_t index) {
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		if (scene.ParameterValue(id) != TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)])
			return true;
	for (int32_t step = 0; step < TVortelScene::kNumberOfGaterSteps; ++step)
		if (scene.GaterStep(step) != TVortelScene::DefaultGaterStep(step))
			return true;
	return scene.Seed().Get() != TVortelProgram::InitialSeed(index);
}

/// Files leave out some of what can be heard.
void WarnOfLosses(TVortelDocument& document, const TInstanceSettings& settings, TNotices& notices) {
	TVortelScene& scene = *document.ActiveScene();
	if (!scene.HasContent() && HasSettings(scene, document.ActiveProgram()->ActiveSceneIndex().Get()))
		notices.Warn("--save: the scene has no block, and such scenes are not kept in files");
	if (settings.mLock || settings.mSolo)
		notices.Warn("--save: --lock and --solo are not kept in files");
}

/// One sound through one instance.
class TRenderRun {
public:
	/// All must outlive the run. The instance has its settings.
	TRenderRun(
	    const TInstance& instance, const TRenderOptions& options, const TPlan& plan, const TRenderOptions::TJob& job,
	    TNotices& notices)
	    : mInstance(instance),
	      mOptions(options),
	      mPlan(plan),
	      mJob(job),
	      mNotices(notices) {}

	void Process(TProgressBar& progress) {
		if (mJob.mInput.empty()) {
			TMemorySource loop(MakeDemoLoop());
			Process(loop, nullptr, progress);
		} else {
			TSoundFileReader file(mJob.mInput);
			Process(file, &file, progress);
		}
	}

private:
	void Process(TSoundSource& input, const TSoundFileReader* file, TProgressBar& progress) {
		TTailSource source(input, mOptions.mTail);
		if (mOptions.mFolder.empty())
			progress.Expect(source.Frames());
		const std::unique_ptr<TRenderPlot> plot = MakePlot(source);
		TSoundFileWriter writer(
		    mJob.mOutput, source.SampleRate(), mOptions.FormatOf("OUT", mJob.mOutput), source.Frames());
		TEventList events(source.SampleRate());
		events.AddAutomation(mPlan.mAutomation);
		events.AddNotes(mOptions.mNotes);
		events.AddFile(mPlan.mMidiFile);
		TRenderer renderer(mInstance.Shell(), mOptions, mPlan.mTempi, events, source, writer, plot.get());
		renderer.Run(progress);
		if (plot)
			plot->Draw();
		writer.Finish();
		Warn(renderer, writer, file);
		mNotices.Settle();
		writer.Commit();
		if (plot)
			plot->Commit();
	}

	void Warn(const TRenderer& renderer, const TSoundFileWriter& writer, const TSoundFileReader* file) {
		if (file && !file->Shortfall().empty())
			mNotices.Warn(file->Shortfall());
		if (writer.Clipped() > 0)
			mNotices.Warn(
			    mJob.OutputName() + ": " + std::to_string(writer.Clipped()) +
			    " samples lie beyond full scale and are clipped; float would keep them");
		if (renderer.HasChangedNothing())
			mNotices.Warn(
			    mJob.OutputName() + ": is the sound of " + mJob.InputName() + " unchanged" +
			    (mPlan.mWhyUnchanged.empty() ? "" : ": " + mPlan.mWhyUnchanged));
	}

	std::unique_ptr<TRenderPlot> MakePlot(const TSoundSource& source) const {
		if (mOptions.mPlot.empty())
			return nullptr;
		const TRenderPlot::TTitle title{
		    mJob.mInput.empty() ? "demo loop" : Name(mJob.InputName()), Name(mJob.OutputName())};
		return mInstance.WithDocument([&](TVortelDocument& document) {
			return std::make_unique<TRenderPlot>(
			    mOptions.mPlot, title, document, mInstance.Engine(), source.SampleRate(), source.Frames());
		});
	}

	const TInstance& mInstance;
	const TRenderOptions& mOptions;
	const TPlan& mPlan;
	const TRenderOptions::TJob& mJob;
	TNotices& mNotices;
};

/// Several files side by side, each as if it were the only one.
class TBatch {
public:
	/// All must outlive the batch.
	TBatch(const TRenderOptions& options, const TPlan& plan, TNotices& notices)
	    : mOptions(options),
	      mPlan(plan),
	      mNotices(notices),
	      mJobs(options.Jobs()),
	      mNoticesOfJobs(mJobs.size()),
	      mProgress(options.mQuiet) {}

	void Run() {
		ExpectFrames();
		std::vector<std::thread> workers;
		const std::size_t cores = std::max(std::thread::hardware_concurrency(), 1u);
		for (std::size_t i = 1; i < std::min(cores, mJobs.size()); ++i)
			workers.emplace_back([this] { Work(); });
		Work();
		for (std::thread& worker : workers)
			worker.join();
		mProgress.Clear();
		for (TNotices& notices : mNoticesOfJobs)
			mNotices.Take(notices);
		if (!mFailures.empty())
			Report();
	}

private:
	/// A file that cannot be read fails when its turn comes.
	void ExpectFrames() {
		for (const TRenderOptions::TJob& job : mJobs) {
			try {
				TSoundFileReader file(job.mInput);
				mProgress.Expect(TTailSource(file, mOptions.mTail).Frames());
			} catch (const TWorkError&) {
			}
		}
	}

	void Work() {
		for (std::size_t job; (job = mNext.fetch_add(1)) < mJobs.size();) {
			try {
				Render(mJobs[job], mNoticesOfJobs[job]);
			} catch (const TReadableException& error) {
				AddFailure(job, error.Message().CString());
			} catch (const std::exception& error) {
				AddFailure(job, error.what());
			}
		}
	}

	void Render(const TRenderOptions::TJob& job, TNotices& notices) {
		TRandom::TState state{0};
		const TRandom::TScope random(&state);
		if (mOptions.mIsStrict)
			notices.BeStrict();
		const TInstance instance;
		instance.WithDocument([&](TVortelDocument& document) { mOptions.mSettings.ApplyTo(document); });
		TRenderRun(instance, mOptions, mPlan, job, notices).Process(mProgress);
	}

	/// A failure has its message, and warnings are part of it or of no interest.
	void AddFailure(std::size_t job, const std::string& message) {
		mNoticesOfJobs[job].Clear();
		const std::lock_guard lock(mLock);
		mFailures.emplace(job, message);
	}

	[[noreturn]] void Report() {
		for (const auto& [job, message] : mFailures)
			mNotices.Remark(message);
		mNotices.Print();
		throw TWorkError(
		    std::to_string(mFailures.size()) + " of " + std::to_string(mJobs.size()) + " files failed: " + Failed());
	}

	std::string Failed() const {
		std::vector<std::string> names;
		for (const auto& [job, message] : mFailures)
			names.push_back(mJobs[job].mInput);
		return Listed(names, ", ");
	}

	const TRenderOptions& mOptions;
	const TPlan& mPlan;
	TNotices& mNotices;
	const std::vector<TRenderOptions::TJob> mJobs;
	std::deque<TNotices> mNoticesOfJobs; // so that they come in the order of the files
	TProgressBar mProgress;
	std::atomic<std::size_t> mNext{0};
	std::mutex mLock;
	std::map<std::size_t, std::string> mFailures; // by job
};

/// A folder for the outputs, made if need be, and gone again if nothing came to lie in it.
class TOutputFolder {
public:
	explicit TOutputFolder(const std::string& path) : mPath(path) {
		std::error_code error;
		mIsNew = std::filesystem::create_directory(path, error);
		std::error_code reason;
		if (!std::filesystem::is_directory(path, reason))
			throw TWorkError(path + ": " + (error ? error.message() : "is no folder"));
	}

	~TOutputFolder() {
		if (mIsNew)
			rmdir(mPath.c_str()); // fails unless it is empty
	}

	TOutputFolder(const TOutputFolder&) = delete;
	TOutputFolder& operator=(const TOutputFolder&) = delete;

private:
	const std::string& mPath;
	bool mIsNew = false;
};

} // namespace

void RunRender(const TRenderOptions& options, TNotices& notices) {
	options.CheckFiles();
	if (options.mIsStrict)
		notices.BeStrict();
	// The settings first: a wrong name is bad usage, whatever may be wrong with the files.
	const TInstance instance;
	instance.WithDocument([&](TVortelDocument& document) { options.mSettings.ApplyTo(document); });
	const TPlan plan(instance, options);
	options.mSettings.Report(notices);
	if (!options.mSave.empty())
		instance.WithDocument([&](TVortelDocument& document) { WarnOfLosses(document, options.mSettings, notices); });
	notices.Settle();

	std::optional<TReplacedFile> saved; // so that what cannot be written is known before the work
	if (!options.mSave.empty())
		saved.emplace(options.mSave).Write(plan.mSaved.Bytes());
	if (!options.mFolder.empty()) {
		const TOutputFolder folder(options.mFolder);
		TBatch(options, plan, notices).Run();
	} else {
		TProgressBar progress(options.mQuiet);
		for (const TRenderOptions::TJob& job : options.Jobs())
			TRenderRun(instance, options, plan, job, notices).Process(progress);
	}
	if (saved)
		saved->Commit();
	if (!options.mDemoDryOutput.empty())
		WriteDryLoop(options.mDemoDryOutput, options.FormatOf("--demo-dry", options.mDemoDryOutput));
}
