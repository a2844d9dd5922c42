-- What the driver calls inside Ardour. Each function returns a text.

local orvo = {}

local function plugin (track)
  local processor = Session:route_by_name (track):nth_plugin (0)
  assert (not processor:isnil (), "no plug-in on " .. track)
  return processor
end

function orvo.import (file)
  local files = C.StringVector ()
  files:push_back (file)
  Editor:do_import (files, Editing.ImportDistinctFiles, Editing.ImportAsTrack, ARDOUR.SrcQuality.SrcBest,
                    ARDOUR.MidiTrackNameSource.SMFTrackName, ARDOUR.MidiTempoMapDisposition.SMFTempoIgnore,
                    Temporal.timepos_t (0), ARDOUR.PluginInfo (), ARDOUR.Track (), false)
  local names = {}
  for route in Session:get_tracks ():iter () do names[#names + 1] = route:name () end
  return table.concat (names, "\n")
end

function orvo.insert (track)
  local processor = ARDOUR.LuaAPI.new_plugin (Session, "Orvo", ARDOUR.PluginType.VST3, "")
  assert (not processor:isnil (), "Ardour has not found Orvo")
  Session:route_by_name (track):add_processor_by_index (processor, 0, nil, true)
  return plugin (track):name ()
end

function orvo.mute (track)
  Session:route_by_name (track):mute_control ():set_value (1, PBD.GroupControlDisposition.NoGroup)
  return track
end

function orvo.action (group, name)
  Editor:access_action (group, name)
  return name
end

function orvo.play ()
  Session:request_locate (0, false, ARDOUR.LocateTransportDisposition.MustRoll, ARDOUR.TransportRequestSource.TRS_UI)
  return "rolling"
end

function orvo.position () return tostring (Session:transport_sample ()) end

function orvo.stop ()
  Session:request_stop (false, false, ARDOUR.TransportRequestSource.TRS_UI)
  return "stopped"
end

function orvo.latency (track) return tostring (plugin (track):to_latent ():effective_latency ()) end

-- Two values of a parameter, as automation without slopes: the first until the second's time in samples.
function orvo.automate (track, label, first, second, at)
  local processor = plugin (track)
  local insert = processor:to_plugininsert ():plugin (0)
  for index = 0, insert:parameter_count () - 1 do
    if insert:parameter_label (index) == label then
      local _, control, description = ARDOUR.LuaAPI.plugin_automation (processor, index)
      local range = description.upper - description.lower
      control:set_interpolation (Evoral.InterpolationStyle.Discrete)
      control:add (Temporal.timepos_t (0), description.lower + first * range, false, true)
      control:add (Temporal.timepos_t (at), description.lower + second * range, false, true)
      local parameter = Evoral.Parameter (ARDOUR.AutomationType.PluginAutomation, 0, index)
      local automation = processor:to_automatable ():automation_control (parameter, false)
      automation:set_automation_state (ARDOUR.AutoState.Play)
      return description.label .. " " .. description.lower .. " " .. description.upper
    end
  end
  error ("no parameter " .. label)
end

function orvo.save ()
  Session:save_state ("")
  return "saved"
end

return orvo
