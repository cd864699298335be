-- SPDX-License-Identifier: GPL-3.0-or-later
-- Makes and reopens an Ardour session without a screen, on the dummy backend. Prints the values of all parameters.
-- ardour7-lua ardour.lua make FOLDER FORMAT PRESET AUDIO RATE FRAMES TEMPO [ID=VALUE...]: a session whose one track plays
--     AUDIO-L.wav and AUDIO-R.wav through the plug-in, which gets the preset, if it is not empty, and then the parameters.
--     FORMAT is VST3 or LXVST.
-- ardour7-lua ardour.lua reopen FOLDER RATE [ID=VALUE...]: opens it, sets the parameters and saves it again.

local kPlugin = "Vortel2"
local kBlock = 512
local kSuperClock = 282240000
local kName = arg[2]:match("[^/]+$")

local function fail(text)
	print("FAILED: " .. text)
	os.exit(1)
end

local function start_engine(rate)
	AudioEngine:set_backend("None (Dummy)", "", "")
	AudioEngine:set_sample_rate(rate)
	AudioEngine:set_buffer_size(kBlock)
end

local function first_track()
	for track in Session:get_tracks():iter() do
		return track
	end
	fail("the session has no track")
end

local function read_all(path)
	local file = io.open(path, "rb") or fail("cannot read " .. path)
	local text = file:read("a")
	file:close()
	return text
end

local function write_all(path, text)
	local file = io.open(path, "wb") or fail("cannot write " .. path)
	file:write(text)
	file:close()
end

-- The scripting interface has no import, so the session gets what an import leaves there: a file and a source for each
-- channel, and one region in the track's playlist, at gain 1 and without fades.
local function import(folder, audio, rate, frames, tempo)
	for _, side in ipairs({"L", "R"}) do
		write_all(string.format("%s/interchange/%s/audiofiles/%s.wav", folder, kName, side), read_all(audio .. "-" .. side .. ".wav"))
	end
	local superclocks = frames * kSuperClock // rate
	local length = string.format("a%d@a0", superclocks)
	local source = [[<Source name="%s.wav" type="audio" flags="CanRename" id="%d" channel="0" gain="1"/>]]
	local sources = source:format("L", 900001) .. source:format("R", 900002)
	local region = ([[<Region name="drums" id="900003" type="audio" channels="2" muted="0" opaque="1" locked="0"
 automatic="0" whole-file="0" start="a0" length="%s" sync-position="a0" import="0" external="0" hidden="0"
 fade-in-active="0" fade-out-active="0" default-fade-in="0" default-fade-out="0" scale-amplitude="1" envelope-active="0"
 position-locked="0" video-locked="0" layering-index="0" layer="0" stretch="1" shift="1" ancestral-start="a0"
 ancestral-length="%s" source-0="900001" source-1="900002" master-source-0="900001" master-source-1="900002"/>]])
		:format(length, length)
	local path = folder .. "/" .. kName .. ".ardour"
	local text, playlists = read_all(path), 0
	text = text:gsub("<Sources/>", "<Sources>" .. sources .. "</Sources>")
	text, playlists = text:gsub("(<Playlist [^>]*)/>", "%1>" .. region .. "</Playlist>")
	text = text:gsub("<Locations/>", ([[<Locations><Location id="900004" name="session" start="a0" end="a%d"
 flags="IsSessionRange" locked="0" position-lock-style="AudioTime"/></Locations>]]):format(superclocks))
	text = text:gsub('id%-counter="%d+"', 'id-counter="900100"')
	text = text:gsub('npm="120" enpm="120"', string.format('npm="%s" enpm="%s"', tempo, tempo))
	if playlists ~= 1 then
		fail("the session has no playlist to import into")
	end
	write_all(path, text)
end

local function insert_plugin(track, format, preset)
	local processor = ARDOUR.LuaAPI.new_plugin(Session, kPlugin, ARDOUR.PluginType[format], "")
	if processor:isnil() then
		fail("Ardour does not know the plug-in")
	end
	track:add_processor_by_index(processor, 0, nil, true)
	if preset == "" then
		return processor
	end
	local plugin = processor:to_insert():plugin(0)
	local record = plugin:preset_by_label(preset)
	if not record.valid or not plugin:load_preset(record) then
		fail("Ardour cannot load the preset")
	end
	return processor
end

-- The dummy backend connects nothing by itself.
local function connect_to_master(track)
	for i = 0, 1 do
		track:output():nth(i):connect(Session:master_out():input():nth(i):name())
	end
end

local function wait_until(text, condition)
	for _ = 1, 3000 do
		if condition() then
			return
		end
		ARDOUR.LuaAPI.usleep(10000)
	end
	fail("waited 30 seconds in vain until " .. text)
end

-- A value can be read as soon as it is set; the plug-in gets it with a block of the audio thread, which leaves a block
-- out while another thread holds the session's locks.
local function set_parameters(processor, settings)
	for _, setting in ipairs(settings) do
		local id, value = setting:match("^(%d+)=(.+)$")
		if not ARDOUR.LuaAPI.set_processor_param(processor, tonumber(id), tonumber(value)) then
			fail("Ardour cannot set parameter " .. id)
		end
		wait_until("parameter " .. id .. " is " .. value, function()
			return math.abs(ARDOUR.LuaAPI.get_processor_param(processor, tonumber(id), 0) - tonumber(value)) < 1e-6
		end)
	end
	local target = AudioEngine:processed_samples() + 16 * kBlock
	wait_until("the audio thread has played sixteen blocks", function()
		return AudioEngine:processed_samples() >= target
	end)
end

local function print_parameters(processor)
	local plugin = processor:to_insert():plugin(0)
	for i = 0, plugin:parameter_count() - 1 do
		local value = ARDOUR.LuaAPI.get_processor_param(processor, i, 0)
		print(string.format("parameter %d %s = %.9g", i, plugin:parameter_label(i), value))
	end
end

local function save_and_close()
	print_parameters(first_track():nth_plugin(0))
	Session:save_state("")
	close_session()
end

local function make(folder, format, preset, audio, rate, frames, tempo, settings)
	start_engine(rate)
	create_session(folder, kName, rate)
	Session:new_audio_track(2, 2, nil, 1, "drums", ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true)
	Session:save_state("")
	close_session()
	import(folder, audio, rate, frames, tempo)
	load_session(folder, kName)
	connect_to_master(first_track())
	set_parameters(insert_plugin(first_track(), format, preset), settings)
	save_and_close()
end

local function reopen(folder, rate, settings)
	start_engine(rate)
	load_session(folder, kName)
	set_parameters(first_track():nth_plugin(0), settings)
	save_and_close()
end

if arg[1] == "make" then
	make(arg[2], arg[3], arg[4], arg[5], math.tointeger(arg[6]), math.tointeger(arg[7]), arg[8], {table.unpack(arg, 9)})
else
	reopen(arg[2], math.tointeger(arg[3]), {table.unpack(arg, 4)})
end
