<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="ru">
<context>
  <name>Velmora</name>
  <message>
    <source>%@ МБ</source>
    <translation>%@ MB</translation>
  </message>
  <message>
    <source>%@ из %@</source>
    <translation>%@ of %@</translation>
  </message>
  <message>
    <source>%@ мажор</source>
    <translation>%@ major</translation>
  </message>
  <message>
    <source>%@ минор</source>
    <translation>%@ minor</translation>
  </message>
  <message>
    <source>%@ — в файле</source>
    <translation>%@ — in the file</translation>
  </message>
  <message>
    <source>%d BPM · сила %d %</source>
    <translation>%d BPM · strength %d%</translation>
  </message>
  <message>
    <source>%d КБ</source>
    <translation>%d KB</translation>
  </message>
  <message>
    <source>%d мин</source>
    <translation>%d min</translation>
  </message>
  <message>
    <source>%d ч %@ мин</source>
    <translation>%d h %@ min</translation>
  </message>
  <message numerus="yes">
    <source>%n мест для поиска</source>
    <translation>
      <numerusform>%n place to search</numerusform>
      <numerusform>%n places to search</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n папок</source>
    <translation>
      <numerusform>%n folder</numerusform>
      <numerusform>%n folders</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n треков</source>
    <translation>
      <numerusform>%n track</numerusform>
      <numerusform>%n tracks</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n файлов</source>
    <translation>
      <numerusform>%n file</numerusform>
      <numerusform>%n files</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n центов</source>
    <translation>
      <numerusform>%n cent</numerusform>
      <numerusform>%n cents</numerusform>
    </translation>
  </message>
  <message>
    <source>Velmora закроется, когда правки будут записаны</source>
    <translation>Velmora closes when the edits are written</translation>
  </message>
  <message>
    <source>Velmora не закрыта: не все правки удалось записать</source>
    <translation>Velmora stays open: some edits could not be written</translation>
  </message>
  <message>
    <source>Velmora уже запущена, но не отвечает</source>
    <translation>Velmora is running already but does not answer</translation>
  </message>
  <message>
    <source>macOS не может безопасно перезаписать теги в формате .%@.</source>
    <translation>macOS cannot safely rewrite tags in the .%@ format.</translation>
  </message>
  <message>
    <source>Акцентный</source>
    <translation>Accent</translation>
  </message>
  <message>
    <source>Альбом</source>
    <translation>Album</translation>
  </message>
  <message>
    <source>Альбом «%@» присвоен: %d</source>
    <translation>Album “%@” assigned: %d</translation>
  </message>
  <message>
    <source>Альбом очищен: %d</source>
    <translation>Album cleared: %d</translation>
  </message>
  <message>
    <source>Анализ</source>
    <translation>Analysis</translation>
  </message>
  <message>
    <source>Анализ BPM остановлен: декодер не ответил вовремя.</source>
    <translation>BPM analysis was stopped: the decoder did not respond in time.</translation>
  </message>
  <message>
    <source>Анализ BPM: %d из %d</source>
    <translation>BPM analysis: %d of %d</translation>
  </message>
  <message>
    <source>Анализ качества</source>
    <translation>Quality analysis</translation>
  </message>
  <message>
    <source>Аудиофайл временно недоступен для waveform.</source>
    <translation>The audio file is temporarily unavailable for the waveform.</translation>
  </message>
  <message>
    <source>Аудиофайлы и папки</source>
    <translation>Audio files and folders</translation>
  </message>
  <message>
    <source>Без обложки</source>
    <translation>No cover</translation>
  </message>
  <message>
    <source>Без результата</source>
    <translation>No result</translation>
  </message>
  <message>
    <source>Битрейт</source>
    <translation>Bit rate</translation>
  </message>
  <message>
    <source>Больше не оставлять</source>
    <translation>Stop keeping them</translation>
  </message>
  <message>
    <source>Будет очищено</source>
    <translation>Will be cleared</translation>
  </message>
  <message>
    <source>Будет сохранена как JPEG</source>
    <translation>Will be saved as JPEG</translation>
  </message>
  <message>
    <source>Будет сохранена как PNG, без изменений</source>
    <translation>Will be saved as PNG, unchanged</translation>
  </message>
  <message>
    <source>В Корзину</source>
    <translation type="vanished">Move to Trash</translation>
  </message>
  <message>
    <source>В аудиофайле нет данных для анализа BPM.</source>
    <translation>The audio file holds no data for BPM analysis.</translation>
  </message>
  <message>
    <source>В буфере обмена нет изображения</source>
    <translation>There is no image on the clipboard</translation>
  </message>
  <message>
    <source>В избранном</source>
    <translation>In favorites</translation>
  </message>
  <message>
    <source>В конвертер</source>
    <translation>To converter</translation>
  </message>
  <message>
    <source>В очереди</source>
    <translation>Waiting</translation>
  </message>
  <message>
    <source>В очереди. Тональность определяется, пока ничего не играет.</source>
    <translation>Queued. Keys are detected while nothing plays.</translation>
  </message>
  <message>
    <source>В теге</source>
    <translation>In tag</translation>
  </message>
  <message>
    <source>В теге пусто, код стоит в имени файла</source>
    <translation>The tag is empty, the code is in the file name</translation>
  </message>
  <message>
    <source>В файле нет ничего лишнего</source>
    <translation>The file holds nothing else</translation>
  </message>
  <message>
    <source>В файлы не записано: %d</source>
    <translation>Not written to files: %d</translation>
  </message>
  <message>
    <source>В файлы этого формата обложка не записывается</source>
    <translation>Files of this format take no cover</translation>
  </message>
  <message>
    <source>Варианты</source>
    <translation>Alternatives</translation>
  </message>
  <message>
    <source>Вернуть из копии…</source>
    <translation>Restore from a copy…</translation>
  </message>
  <message>
    <source>Вернуть исходные теги</source>
    <translation>Restore Original Tags</translation>
  </message>
  <message>
    <source>Вернуть при следующем запуске</source>
    <translation>Restore with the next start</translation>
  </message>
  <message>
    <source>Вид волны</source>
    <translation>Waveform shape</translation>
  </message>
  <message>
    <source>Включить звук</source>
    <translation>Unmute</translation>
  </message>
  <message>
    <source>Возврат из Корзины: %d из %d</source>
    <translation>Putting back from the Trash: %d of %d</translation>
  </message>
  <message>
    <source>Волна</source>
    <translation>Waveform</translation>
  </message>
  <message>
    <source>Воспроизвести</source>
    <translation>Play</translation>
  </message>
  <message>
    <source>Воспроизвести или приостановить</source>
    <translation>Play or pause</translation>
  </message>
  <message>
    <source>Восстановлено: %d</source>
    <translation>Restored: %d</translation>
  </message>
  <message>
    <source>Восстановлено: %d · остановлено, осталось: %d</source>
    <translation>Restored: %d · stopped, left: %d</translation>
  </message>
  <message>
    <source>Временные файлы в Корзину: %d</source>
    <translation>Temporary files to Trash: %d</translation>
  </message>
  <message>
    <source>Время</source>
    <translation>Length</translation>
  </message>
  <message>
    <source>Все жанры</source>
    <translation>All genres</translation>
  </message>
  <message>
    <source>Вставить изображение</source>
    <translation>Paste Image</translation>
  </message>
  <message>
    <source>Выберите обложку</source>
    <translation>Choose a cover</translation>
  </message>
  <message>
    <source>Выберите трек в «Избранном»</source>
    <translation>Select a track in Favorites</translation>
  </message>
  <message>
    <source>Выберите треки</source>
    <translation>Select tracks</translation>
  </message>
  <message>
    <source>Выберите треки, чтобы увидеть их теги</source>
    <translation>Select tracks to see their tags</translation>
  </message>
  <message>
    <source>Выбрано: %d</source>
    <translation>%d selected</translation>
  </message>
  <message>
    <source>Выбрать изображение</source>
    <translation>Choose Image</translation>
  </message>
  <message>
    <source>Выбрать изображение…</source>
    <translation>Choose Image…</translation>
  </message>
  <message>
    <source>Выделить всё</source>
    <translation>Select all</translation>
  </message>
  <message>
    <source>Выйти сразу</source>
    <translation>Quit now</translation>
  </message>
  <message>
    <source>Выключить звук</source>
    <translation>Mute</translation>
  </message>
  <message>
    <source>Выключить или включить звук</source>
    <translation>Mute or unmute</translation>
  </message>
  <message>
    <source>Высокая</source>
    <translation>High</translation>
  </message>
  <message>
    <source>Высота волны</source>
    <translation>Waveform height</translation>
  </message>
  <message>
    <source>Год</source>
    <translation>Year</translation>
  </message>
  <message>
    <source>Готово</source>
    <translation>Done</translation>
  </message>
  <message>
    <source>Громкость</source>
    <translation>Volume</translation>
  </message>
  <message>
    <source>Добавить</source>
    <translation>Add</translation>
  </message>
  <message>
    <source>Добавить в избранное</source>
    <translation>Add to favorites</translation>
  </message>
  <message>
    <source>Добавить в избранное или убрать</source>
    <translation>Add to or remove from favorites</translation>
  </message>
  <message>
    <source>Добавить папки…</source>
    <translation>Add folders…</translation>
  </message>
  <message>
    <source>Добавить файлы в обложки…</source>
    <translation>Add Files to Covers…</translation>
  </message>
  <message>
    <source>Добавить файлы в тональность…</source>
    <translation>Add files to Key…</translation>
  </message>
  <message>
    <source>Добавить файлы…</source>
    <translation>Add files…</translation>
  </message>
  <message>
    <source>Добавлено в анализ: %d</source>
    <translation>Added to analysis: %d</translation>
  </message>
  <message>
    <source>Добавлено в избранное: %d</source>
    <translation>Added to favorites: %d</translation>
  </message>
  <message>
    <source>Добавлено в конвертер: %d</source>
    <translation>Added to converter: %d</translation>
  </message>
  <message>
    <source>Добавлено в обложки: %d</source>
    <translation>Added to covers: %d</translation>
  </message>
  <message>
    <source>Добавлено в плейлист: %d</source>
    <translation>Added to playlist: %d</translation>
  </message>
  <message>
    <source>Добавлено в тональность: %d</source>
    <translation>Added to key detection: %d</translation>
  </message>
  <message>
    <source>Добавьте папки, в которых нужно искать одинаковые треки.</source>
    <translation>Add the folders to search for identical tracks.</translation>
  </message>
  <message>
    <source>Добавьте файлы для определения тональности</source>
    <translation>Add files to detect their keys</translation>
  </message>
  <message>
    <source>Добавьте файлы, чтобы проверить качество звука.</source>
    <translation>Add files to check their sound quality.</translation>
  </message>
  <message>
    <source>Дождитесь завершения текущей записи обложек</source>
    <translation>Wait until the covers being written are done</translation>
  </message>
  <message>
    <source>Дописать и выйти</source>
    <translation>Write them and quit</translation>
  </message>
  <message>
    <source>Другие варианты даст новое определение</source>
    <translation>Finding the tempo again brings alternatives</translation>
  </message>
  <message>
    <source>Другие варианты: %@</source>
    <translation>Other tempos: %@</translation>
  </message>
  <message>
    <source>Дубликаты</source>
    <translation>Duplicates</translation>
  </message>
  <message>
    <source>Есть обложка</source>
    <translation>Has a cover</translation>
  </message>
  <message>
    <source>Есть правки, которых ещё нет в файлах</source>
    <translation>Some edits are not in their files yet</translation>
  </message>
  <message>
    <source>Жанр</source>
    <translation>Genre</translation>
  </message>
  <message>
    <source>Жанр «%@» присвоен: %d</source>
    <translation>Genre “%@” assigned: %d</translation>
  </message>
  <message>
    <source>Жанр очищен: %d</source>
    <translation>Genre cleared: %d</translation>
  </message>
  <message>
    <source>Задать темп</source>
    <translation>Set Tempo</translation>
  </message>
  <message>
    <source>Задать темп нажатиями</source>
    <translation>Tap the Tempo</translation>
  </message>
  <message>
    <source>Закрыть</source>
    <translation>Close</translation>
  </message>
  <message>
    <source>Заменить…</source>
    <translation>Replace…</translation>
  </message>
  <message>
    <source>Записать в теги</source>
    <translation>Write to tags</translation>
  </message>
  <message>
    <source>Записать ещё раз: %d</source>
    <translation>Write again: %d</translation>
  </message>
  <message>
    <source>Записать темп</source>
    <translation>Write Tempo</translation>
  </message>
  <message>
    <source>Записать темп в тег</source>
    <translation>Write Tempo to Tag</translation>
  </message>
  <message>
    <source>Записать тональность</source>
    <translation>Write key</translation>
  </message>
  <message>
    <source>Записываем альбом «%@»: %d</source>
    <translation>Writing album “%@”: %d</translation>
  </message>
  <message>
    <source>Записываем жанр «%@»: %d</source>
    <translation>Writing genre “%@”: %d</translation>
  </message>
  <message>
    <source>Записываем комментарий «%@»: %d</source>
    <translation>Writing comment “%@”: %d</translation>
  </message>
  <message>
    <source>Записываем теги: %d</source>
    <translation>Writing tags: %d</translation>
  </message>
  <message>
    <source>Запись остановлена, в файлы не записано: %d</source>
    <translation>Writing stopped, not written to files: %d</translation>
  </message>
  <message>
    <source>Запись тегов: %d из %d</source>
    <translation>Writing tags: %d of %d</translation>
  </message>
  <message>
    <source>Звук снова слышен.</source>
    <translation>The sound can be heard again.</translation>
  </message>
  <message>
    <source>Звуковое устройство не найдено: звук не слышен.</source>
    <translation>No sound device was found: the sound cannot be heard.</translation>
  </message>
  <message>
    <source>Звуковое устройство отключено. Воспроизведение приостановлено.</source>
    <translation>The sound device was disconnected. Playback is paused.</translation>
  </message>
  <message>
    <source>Здесь появятся обложки избранных и добавленных треков.</source>
    <translation>Covers of favorite and added tracks will appear here.</translation>
  </message>
  <message>
    <source>Избранное</source>
    <translation>Favorites</translation>
  </message>
  <message>
    <source>Избранное обновлено: %d</source>
    <translation>Favorites updated: %d</translation>
  </message>
  <message>
    <source>Изменить альбом</source>
    <translation>Change Album</translation>
  </message>
  <message>
    <source>Изменить избранное</source>
    <translation>Change Favorites</translation>
  </message>
  <message>
    <source>Изменить теги</source>
    <translation>Edit Tags</translation>
  </message>
  <message>
    <source>Изменить темп</source>
    <translation>Change Tempo</translation>
  </message>
  <message>
    <source>Изображения</source>
    <translation>Images</translation>
  </message>
  <message>
    <source>Исполнитель</source>
    <translation>Artist</translation>
  </message>
  <message>
    <source>Исполнитель альбома</source>
    <translation>Album artist</translation>
  </message>
  <message>
    <source>Исходные теги возвращены: %d</source>
    <translation>Original tags restored: %d</translation>
  </message>
  <message>
    <source>Исходные теги не подходят к файлу %@: его звук с тех пор изменился.</source>
    <translation>The original tags do not fit the file %@: its sound has changed since then.</translation>
  </message>
  <message>
    <source>Исходные теги файла %@ не удалось сохранить в копию, поэтому файл не изменён.</source>
    <translation>The original tags of the file %@ could not be backed up, so the file was not changed.</translation>
  </message>
  <message>
    <source>Исходных тегов этих файлов нет: Velmora их не меняла</source>
    <translation>There are no original tags of these files: Velmora has not changed them</translation>
  </message>
  <message>
    <source>Ключ</source>
    <translation>Key</translation>
  </message>
  <message>
    <source>Код</source>
    <translation>Code</translation>
  </message>
  <message>
    <source>Колесо мыши над волной</source>
    <translation>Wheel over the waveform</translation>
  </message>
  <message>
    <source>Команды</source>
    <translation>Commands</translation>
  </message>
  <message>
    <source>Комментарий</source>
    <translation>Comment</translation>
  </message>
  <message>
    <source>Комментарий «%@» присвоен: %d</source>
    <translation>Comment “%@” assigned: %d</translation>
  </message>
  <message>
    <source>Комментарий очищен: %d</source>
    <translation>Comment cleared: %d</translation>
  </message>
  <message>
    <source>Компактная</source>
    <translation>Compact</translation>
  </message>
  <message>
    <source>Компоновка</source>
    <translation>Layout</translation>
  </message>
  <message>
    <source>Конвертер</source>
    <translation>Converter</translation>
  </message>
  <message>
    <source>Конвертируется…</source>
    <translation>Converting…</translation>
  </message>
  <message>
    <source>Копий пока нет</source>
    <translation>No copies yet</translation>
  </message>
  <message>
    <source>Копию не удалось прочитать</source>
    <translation>The copy could not be read</translation>
  </message>
  <message>
    <source>Копия исходных тегов файла %@ повреждена.</source>
    <translation>The backup of the original tags of the file %@ is damaged.</translation>
  </message>
  <message>
    <source>Копия откроется при следующем запуске</source>
    <translation>The copy opens with the next start</translation>
  </message>
  <message>
    <source>Корзина недоступна на томе с файлом %@.</source>
    <translation>The Trash is not available on the volume of %@.</translation>
  </message>
  <message>
    <source>Кривая</source>
    <translation>Curve</translation>
  </message>
  <message>
    <source>Круг Camelot</source>
    <translation>Camelot wheel</translation>
  </message>
  <message>
    <source>Кэш волн: %@</source>
    <translation>Waveform cache: %@</translation>
  </message>
  <message>
    <source>Ломаная</source>
    <translation>Straight lines</translation>
  </message>
  <message>
    <source>Лучший найденный код Camelot для каждого успешно прочитанного трека.</source>
    <translation>The best Camelot code found for every track that could be read.</translation>
  </message>
  <message>
    <source>Меньше 500 пикселей: на больших экранах будет нечётко</source>
    <translation>Below 500 pixels: will look blurred on large screens</translation>
  </message>
  <message>
    <source>Мятный</source>
    <translation>Mint</translation>
  </message>
  <message>
    <source>На диске с данными программы недостаточно места.</source>
    <translation>There is not enough space on the disk with the program’s data.</translation>
  </message>
  <message>
    <source>На месте файла %@ уже стоит другой файл.</source>
    <translation>Another file already stands in the place of %@.</translation>
  </message>
  <message>
    <source>Нажатий в такт: %d</source>
    <translation>Taps: %d</translation>
  </message>
  <message>
    <source>Нажимайте в такт, чтобы задать темп</source>
    <translation>Tap along to set the tempo</translation>
  </message>
  <message>
    <source>Название</source>
    <translation>Title</translation>
  </message>
  <message>
    <source>Найдены незавершённые временные файлы: %d</source>
    <translation>Unfinished temporary files found: %d</translation>
  </message>
  <message>
    <source>Настройка</source>
    <translation>Tuning</translation>
  </message>
  <message>
    <source>Настройки</source>
    <translation>Settings</translation>
  </message>
  <message>
    <source>Настройки не сохраняются: диск не принял запись</source>
    <translation>Settings are not saved: the disk refused to write</translation>
  </message>
  <message>
    <source>Не в избранном</source>
    <translation>Not in favorites</translation>
  </message>
  <message>
    <source>Не выходить</source>
    <translation>Do not quit</translation>
  </message>
  <message>
    <source>Не записано в файл: %@</source>
    <translation>Not written to the file: %@</translation>
  </message>
  <message>
    <source>Не квадратное: плееры могут обрезать края</source>
    <translation>Not square: players may crop its edges</translation>
  </message>
  <message>
    <source>Не найден встроенный аудиодекодер.</source>
    <translation>The built-in audio decoder was not found.</translation>
  </message>
  <message>
    <source>Не удалось вернуть из Корзины</source>
    <translation>Could not restore from Trash</translation>
  </message>
  <message>
    <source>Не удалось взять: %d</source>
    <translation>Could not be taken: %d</translation>
  </message>
  <message>
    <source>Не удалось восстановить «%@»: %@</source>
    <translation>Could not restore “%@”: %@</translation>
  </message>
  <message>
    <source>Не удалось выделить устойчивую гармонию в аудиофайле.</source>
    <translation>No stable harmony was found in the audio file.</translation>
  </message>
  <message>
    <source>Не удалось декодировать аудиодорожку для анализа BPM.</source>
    <translation>The audio track could not be decoded for BPM analysis.</translation>
  </message>
  <message>
    <source>Не удалось записать файл %@.</source>
    <translation>The file %@ could not be written.</translation>
  </message>
  <message>
    <source>Не удалось открыть «%@»</source>
    <translation>Could not open “%@”</translation>
  </message>
  <message>
    <source>Не удалось открыть аудиофайл.</source>
    <translation>The audio file could not be opened.</translation>
  </message>
  <message>
    <source>Не удалось переместить в Корзину</source>
    <translation>Could not move to Trash</translation>
  </message>
  <message>
    <source>Не удалось переместить файл %@.</source>
    <translation>Could not move the file %@.</translation>
  </message>
  <message>
    <source>Не удалось подготовить выбранное изображение для обложки.</source>
    <translation>The chosen image could not be prepared as a cover.</translation>
  </message>
  <message>
    <source>Не удалось подготовить спектральный анализ.</source>
    <translation>The spectral analysis could not be prepared.</translation>
  </message>
  <message>
    <source>Не удалось сохранить обложку</source>
    <translation>Could not save the cover</translation>
  </message>
  <message>
    <source>Не удалось сохранить обложку в %d из %d файлов. Первый файл: %@. %@</source>
    <translation>The cover could not be saved to %d of %d files. First file: %@. %@</translation>
  </message>
  <message>
    <source>Не удалось сохранить теги</source>
    <translation>Could not save the tags</translation>
  </message>
  <message>
    <source>Не удалось сохранить теги в формате .%@. Для MP3 используется прямое ID3‑сохранение; другие контейнеры могут быть доступны только для чтения.</source>
    <translation>The tags could not be saved in the .%@ format. MP3 files are saved directly as ID3; other containers may be read-only.</translation>
  </message>
  <message>
    <source>Не указано</source>
    <translation>Not set</translation>
  </message>
  <message>
    <source>Недостаточно аудиоданных для определения BPM.</source>
    <translation>There is not enough audio data to detect the BPM.</translation>
  </message>
  <message>
    <source>Недостаточно аудиоданных для определения тональности.</source>
    <translation>Not enough audio to determine the key.</translation>
  </message>
  <message>
    <source>Недостаточно ритмического материала для определения BPM.</source>
    <translation>There is not enough rhythmic material to detect the BPM.</translation>
  </message>
  <message>
    <source>Незаписанные правки не сохраняются до следующего запуска: %@</source>
    <translation>Unwritten edits are not kept until the next start: %@</translation>
  </message>
  <message>
    <source>Неизвестная ошибка</source>
    <translation>Unknown error</translation>
  </message>
  <message>
    <source>Нейтральный</source>
    <translation>Neutral</translation>
  </message>
  <message>
    <source>Некорректный диапазон BPM.</source>
    <translation>The BPM range is not valid.</translation>
  </message>
  <message>
    <source>Нет прав на запись в папку данных программы.</source>
    <translation>There is no permission to write to the program’s data folder.</translation>
  </message>
  <message>
    <source>Нет прав на запись файла %@ или его папки.</source>
    <translation>You are not permitted to write the file %@ or its folder.</translation>
  </message>
  <message>
    <source>Нет прав на перемещение файла %@.</source>
    <translation>You are not permitted to move the file %@.</translation>
  </message>
  <message>
    <source>Нет прав на чтение файла %@.</source>
    <translation>You are not permitted to read the file %@.</translation>
  </message>
  <message>
    <source>Нет результатов для записи</source>
    <translation>No results to write</translation>
  </message>
  <message>
    <source>Нет темпа для записи</source>
    <translation>No tempo to write</translation>
  </message>
  <message>
    <source>Низкая</source>
    <translation>Low</translation>
  </message>
  <message>
    <source>Новая обложка</source>
    <translation>New Cover</translation>
  </message>
  <message>
    <source>Обложка</source>
    <translation>Cover</translation>
  </message>
  <message>
    <source>Обложка и прочие поля файла останутся</source>
    <translation>The cover and other fields of the file stay</translation>
  </message>
  <message>
    <source>Обложка сохранена: %d</source>
    <translation>Cover saved: %d</translation>
  </message>
  <message>
    <source>Обложка уже сохраняется</source>
    <translation>The cover is being saved already</translation>
  </message>
  <message>
    <source>Обложки</source>
    <translation>Covers</translation>
  </message>
  <message>
    <source>Обложки и прочие поля файлов останутся</source>
    <translation>The covers and other fields of the files stay</translation>
  </message>
  <message>
    <source>Обложки, которые сейчас пишутся, будут дописаны до выхода.</source>
    <translation>Covers on their way will be written before the program ends.</translation>
  </message>
  <message>
    <source>Они больше, чем хранилище копий вмещает.</source>
    <translation>They are larger than the backup storage can hold.</translation>
  </message>
  <message>
    <source>Определение тональности</source>
    <translation>Key detection</translation>
  </message>
  <message>
    <source>Определение тональности: %d из %d</source>
    <translation>Key detection: %d of %d</translation>
  </message>
  <message>
    <source>Определить все</source>
    <translation>Detect all</translation>
  </message>
  <message>
    <source>Определить выбранные</source>
    <translation>Detect selected</translation>
  </message>
  <message>
    <source>Определить темп заново</source>
    <translation>Find Tempo Again</translation>
  </message>
  <message>
    <source>Определяется…</source>
    <translation>Detecting…</translation>
  </message>
  <message>
    <source>Определён темп: %@ BPM</source>
    <translation>Tempo found: %@ BPM</translation>
  </message>
  <message>
    <source>Оранжевый</source>
    <translation>Orange</translation>
  </message>
  <message>
    <source>Оставить до следующего запуска</source>
    <translation>Keep until the next start</translation>
  </message>
  <message>
    <source>Оставлять обложку и прочее</source>
    <translation>Keep cover and other fields</translation>
  </message>
  <message>
    <source>Осталось</source>
    <translation>Remaining</translation>
  </message>
  <message>
    <source>Остановить</source>
    <translation>Stop</translation>
  </message>
  <message>
    <source>Открыть в Finder</source>
    <translation>Show in Finder</translation>
  </message>
  <message>
    <source>Отмена</source>
    <translation>Cancel</translation>
  </message>
  <message>
    <source>Отмена вернёт файлы из Корзины на место</source>
    <translation>Undo puts the files back where they were</translation>
  </message>
  <message>
    <source>Отменено: %@</source>
    <translation>Undone: %@</translation>
  </message>
  <message>
    <source>Отменено: %@ · изменены с тех пор и не тронуты: %d</source>
    <translation>Undone: %@ · changed since and left alone: %d</translation>
  </message>
  <message>
    <source>Отменить</source>
    <translation>Undo</translation>
  </message>
  <message>
    <source>Отменить правки</source>
    <translation>Discard Edits</translation>
  </message>
  <message>
    <source>Отменить правку</source>
    <translation>Undo this edit</translation>
  </message>
  <message>
    <source>Отменяем: %@</source>
    <translation>Undoing: %@</translation>
  </message>
  <message>
    <source>Отмечайте треки сердцем, и они соберутся здесь.</source>
    <translation>Mark tracks with a heart and they will gather here.</translation>
  </message>
  <message>
    <source>Отправить в анализ</source>
    <translation>Send to analysis</translation>
  </message>
  <message>
    <source>Отправить в конвертер</source>
    <translation>Send to converter</translation>
  </message>
  <message>
    <source>Отправлено в анализ: %d</source>
    <translation>Sent to analysis: %d</translation>
  </message>
  <message>
    <source>Очередь конвертера пуста.</source>
    <translation>The converter queue is empty.</translation>
  </message>
  <message>
    <source>Очистить альбом</source>
    <translation>Clear album</translation>
  </message>
  <message>
    <source>Очистить жанр</source>
    <translation>Clear Genre</translation>
  </message>
  <message>
    <source>Очистить комментарий</source>
    <translation>Clear Comment</translation>
  </message>
  <message>
    <source>Очистить кэш волн</source>
    <translation>Empty the waveform cache</translation>
  </message>
  <message>
    <source>Очищаем альбом: %d</source>
    <translation>Clearing album: %d</translation>
  </message>
  <message>
    <source>Очищаем жанр: %d</source>
    <translation>Clearing genre: %d</translation>
  </message>
  <message>
    <source>Очищаем комментарий: %d</source>
    <translation>Clearing comment: %d</translation>
  </message>
  <message>
    <source>Пауза</source>
    <translation>Pause</translation>
  </message>
  <message>
    <source>Переместить в Корзину</source>
    <translation>Move to Trash</translation>
  </message>
  <message>
    <source>Переместить дубликаты в Корзину?</source>
    <translation type="vanished">Move duplicates to Trash?</translation>
  </message>
  <message>
    <source>Перемещение в Корзину: %d из %d</source>
    <translation>Moving to the Trash: %d of %d</translation>
  </message>
  <message>
    <source>Перемещено в Корзину: %d</source>
    <translation>Moved to the Trash: %d</translation>
  </message>
  <message>
    <source>Перемещено в Корзину: %d · остановлено, осталось: %d</source>
    <translation>Moved to Trash: %d · stopped, left: %d</translation>
  </message>
  <message>
    <source>Перемотать вперёд</source>
    <translation>Seek forward</translation>
  </message>
  <message>
    <source>Перемотать назад</source>
    <translation>Seek back</translation>
  </message>
  <message>
    <source>Перемотка</source>
    <translation>Seek</translation>
  </message>
  <message>
    <source>Перетащите или вставьте изображение</source>
    <translation>Drop or paste an image</translation>
  </message>
  <message>
    <source>Плеер сверху</source>
    <translation>Player on top</translation>
  </message>
  <message>
    <source>Плейлист</source>
    <translation>Playlist</translation>
  </message>
  <message>
    <source>Плейлист пуст. Добавьте треки, чтобы начать подготовку.</source>
    <translation>The playlist is empty. Add tracks to start preparing.</translation>
  </message>
  <message>
    <source>Плотные строки</source>
    <translation>Denser rows</translation>
  </message>
  <message>
    <source>По BPM</source>
    <translation>By BPM</translation>
  </message>
  <message>
    <source>По возрастанию</source>
    <translation>Ascending</translation>
  </message>
  <message>
    <source>По жанру</source>
    <translation>By genre</translation>
  </message>
  <message>
    <source>По имени</source>
    <translation>By name</translation>
  </message>
  <message>
    <source>По рейтингу</source>
    <translation>By popularity</translation>
  </message>
  <message>
    <source>По типу</source>
    <translation>By type</translation>
  </message>
  <message>
    <source>По убыванию</source>
    <translation>Descending</translation>
  </message>
  <message>
    <source>По умолчанию</source>
    <translation>Default</translation>
  </message>
  <message>
    <source>Повторено: %@</source>
    <translation>Redone: %@</translation>
  </message>
  <message>
    <source>Повторено: %@ · изменены с тех пор и не тронуты: %d</source>
    <translation>Redone: %@ · changed since and left alone: %d</translation>
  </message>
  <message>
    <source>Повторить</source>
    <translation>Redo</translation>
  </message>
  <message>
    <source>Повторяем: %@</source>
    <translation>Redoing: %@</translation>
  </message>
  <message>
    <source>Подождите: обложка ещё сохраняется в файл</source>
    <translation>Please wait: the cover is still being saved to the file</translation>
  </message>
  <message>
    <source>Подтвердить очистку?</source>
    <translation type="vanished">Confirm cleanup?</translation>
  </message>
  <message>
    <source>Позиция в треке</source>
    <translation>Position in the track</translation>
  </message>
  <message>
    <source>Поиск дубликатов</source>
    <translation>Duplicate search</translation>
  </message>
  <message>
    <source>Показать теги</source>
    <translation>Show tags</translation>
  </message>
  <message>
    <source>Полная</source>
    <translation>Full</translation>
  </message>
  <message>
    <source>Порядок треков</source>
    <translation>Order of tracks</translation>
  </message>
  <message>
    <source>Правки для: %@ — не сохранены</source>
    <translation>Edits for %@ are not saved</translation>
  </message>
  <message>
    <source>Правки не сохранены: этот раздел не показывает их строк</source>
    <translation>Edits are not saved: this section does not show their rows</translation>
  </message>
  <message>
    <source>Правки не удалось сохранить до следующего запуска</source>
    <translation>The edits could not be kept until the next start</translation>
  </message>
  <message>
    <source>Правки сняты: %d</source>
    <translation>Edits given up: %d</translation>
  </message>
  <message>
    <source>Правки тегов не сохранены. Чтобы выйти без них, закройте окно ещё раз</source>
    <translation>Edits of tags are not saved. Close the window again to leave without them</translation>
  </message>
  <message>
    <source>Предыдущий трек</source>
    <translation>Previous track</translation>
  </message>
  <message>
    <source>Присвоить выбранным</source>
    <translation>Assign to Selected</translation>
  </message>
  <message>
    <source>Присвоить выбранным: %d</source>
    <translation>Assign to Selected: %d</translation>
  </message>
  <message>
    <source>Присвоить жанр</source>
    <translation>Assign Genre</translation>
  </message>
  <message>
    <source>Присвоить комментарий</source>
    <translation>Assign Comment</translation>
  </message>
  <message>
    <source>Присвоить обложку</source>
    <translation>Assign Cover</translation>
  </message>
  <message>
    <source>Присвоить обложку…</source>
    <translation>Assign Cover…</translation>
  </message>
  <message>
    <source>Пробел</source>
    <translation>Space</translation>
  </message>
  <message>
    <source>Прошло</source>
    <translation>Elapsed</translation>
  </message>
  <message>
    <source>Развернуть боковую панель</source>
    <translation>Expand the sidebar</translation>
  </message>
  <message>
    <source>Разные значения</source>
    <translation>Different values</translation>
  </message>
  <message>
    <source>Розовый</source>
    <translation>Rose</translation>
  </message>
  <message>
    <source>Русский</source>
    <translation>Русский</translation>
  </message>
  <message>
    <source>Сбросить фильтр</source>
    <translation>Clear filter</translation>
  </message>
  <message>
    <source>Свернуть боковую панель</source>
    <translation>Collapse the sidebar</translation>
  </message>
  <message>
    <source>Светлая</source>
    <translation>Light</translation>
  </message>
  <message>
    <source>Сводится с</source>
    <translation>Mixes with</translation>
  </message>
  <message>
    <source>Свой…</source>
    <translation>Custom…</translation>
  </message>
  <message>
    <source>Системное устройство</source>
    <translation>System default</translation>
  </message>
  <message>
    <source>Скрыть теги</source>
    <translation>Hide tags</translation>
  </message>
  <message>
    <source>Следующий трек</source>
    <translation>Next track</translation>
  </message>
  <message>
    <source>Сначала выберите изображение</source>
    <translation>Choose an image first</translation>
  </message>
  <message>
    <source>Снять правки</source>
    <translation>Give up edits</translation>
  </message>
  <message>
    <source>Состояние</source>
    <translation>Status</translation>
  </message>
  <message>
    <source>Сохранение уберёт из файла обложку или поля, которых нет среди десяти полей Velmora. Выбор действует для всех следующих сохранений, изменить его можно в настройках.</source>
    <translation>Saving would remove the file’s cover or fields that are not among Velmora’s ten. Your choice holds for all later saves and can be changed in the settings.</translation>
  </message>
  <message numerus="yes">
    <source>Сохранение удалит %n других полей</source>
    <translation>
      <numerusform>Saving removes %n other field</numerusform>
      <numerusform>Saving removes %n other fields</numerusform>
    </translation>
  </message>
  <message>
    <source>Сохранение удалит обложки и прочие поля</source>
    <translation>Saving removes covers and other fields</translation>
  </message>
  <message>
    <source>Сохранение удалит обложку</source>
    <translation>Saving removes the cover</translation>
  </message>
  <message numerus="yes">
    <source>Сохранение удалит обложку и %n других полей</source>
    <translation>
      <numerusform>Saving removes the cover and %n other field</numerusform>
      <numerusform>Saving removes the cover and %n other fields</numerusform>
    </translation>
  </message>
  <message>
    <source>Сохранено %d, ошибок: %d</source>
    <translation>Saved %d, errors: %d</translation>
  </message>
  <message>
    <source>Сохранить</source>
    <translation>Save</translation>
  </message>
  <message>
    <source>Сохраняем обложку: %d</source>
    <translation>Saving cover: %d</translation>
  </message>
  <message>
    <source>Сохраняем обложку: %d из %d</source>
    <translation>Saving cover: %d of %d</translation>
  </message>
  <message>
    <source>Сохраняем обложку…</source>
    <translation>Saving the cover…</translation>
  </message>
  <message>
    <source>Сохраняет найденные коды Camelot, не изменяя остальные теги.</source>
    <translation>Saves the Camelot codes that were found and leaves all other tags as they are.</translation>
  </message>
  <message>
    <source>Сохраняется…</source>
    <translation>Saving…</translation>
  </message>
  <message>
    <source>Сохранять обложку и прочие поля</source>
    <translation>Keep the Cover and Other Fields</translation>
  </message>
  <message>
    <source>Сохранять обложку и прочие поля файла</source>
    <translation>Keep the File’s Cover and Other Fields</translation>
  </message>
  <message>
    <source>Список не сохраняется: %@</source>
    <translation>The list is not saved: %@</translation>
  </message>
  <message>
    <source>Среди избранных нет треков с жанром «%@».</source>
    <translation>No favorites of the genre “%@”.</translation>
  </message>
  <message>
    <source>Средняя</source>
    <translation>Medium</translation>
  </message>
  <message>
    <source>Столбики</source>
    <translation>Bars</translation>
  </message>
  <message>
    <source>Столбики в децибелах</source>
    <translation>Bars in decibels</translation>
  </message>
  <message>
    <source>Строка состояния</source>
    <translation>Status line</translation>
  </message>
  <message>
    <source>Сюда можно перетащить папки и файлы</source>
    <translation>Drop folders and files here</translation>
  </message>
  <message>
    <source>Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A</source>
    <translation>Drop files and folders here: MP3, FLAC, WAV, AIFF, M4A</translation>
  </message>
  <message>
    <source>Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A, OGG</source>
    <translation>Drop files and folders here: MP3, FLAC, WAV, AIFF, M4A, OGG</translation>
  </message>
  <message>
    <source>Теги</source>
    <translation>Tags</translation>
  </message>
  <message>
    <source>Теги в файлах этого формата изменить нельзя</source>
    <translation>Tags in files of this format cannot be changed</translation>
  </message>
  <message>
    <source>Теги изменены: %d</source>
    <translation>Tags changed: %d</translation>
  </message>
  <message>
    <source>Теги или обложки ещё пишутся в файлы. Чего нет в файлах при выходе, того не будет и после следующего запуска.</source>
    <translation>Tags or covers are still being written into files. What is not in them when Velmora quits will not be there after the next start either.</translation>
  </message>
  <message>
    <source>Теги можно записать в %d из %d файлов</source>
    <translation>Tags can be written to %d of %d files</translation>
  </message>
  <message>
    <source>Теги файла %@ не удалось прочитать, поэтому они не перезаписаны.</source>
    <translation>The tags of %@ could not be read, so they were not overwritten.</translation>
  </message>
  <message>
    <source>Теги файла прочитаны не полностью: сохранение перезапишет их</source>
    <translation>The file’s tags were not read completely: saving overwrites them</translation>
  </message>
  <message>
    <source>Тема</source>
    <translation>Theme</translation>
  </message>
  <message>
    <source>Темп</source>
    <translation>Tempo</translation>
  </message>
  <message>
    <source>Темп записан в теге: он не определяется</source>
    <translation>The tag holds a tempo: it is not looked for</translation>
  </message>
  <message>
    <source>Темп записан: %d</source>
    <translation>Tempo written: %d</translation>
  </message>
  <message>
    <source>Темп записан: %d · пропущено: %d</source>
    <translation>Tempo written: %d · skipped: %d</translation>
  </message>
  <message>
    <source>Темп нажатий: %d BPM</source>
    <translation>Tempo of the taps: %d BPM</translation>
  </message>
  <message>
    <source>Темп определяется</source>
    <translation>Tempo is being found</translation>
  </message>
  <message>
    <source>Только десять полей</source>
    <translation>Only the Ten Fields</translation>
  </message>
  <message>
    <source>Тональность</source>
    <translation>Key</translation>
  </message>
  <message>
    <source>Тональность сохранена: %d</source>
    <translation>Key saved: %d</translation>
  </message>
  <message>
    <source>Тональность сохранена: %d · пропущено: %d</source>
    <translation>Key saved: %d · skipped: %d</translation>
  </message>
  <message>
    <source>Точки</source>
    <translation>Dots</translation>
  </message>
  <message>
    <source>Трек</source>
    <translation>Track</translation>
  </message>
  <message>
    <source>Трек находится в «Избранном»</source>
    <translation>The track is in Favorites</translation>
  </message>
  <message>
    <source>Трек не выбран</source>
    <translation>No track selected</translation>
  </message>
  <message>
    <source>Трека больше нет в списке.</source>
    <translation>The track is no longer in the list.</translation>
  </message>
  <message>
    <source>Тёмная</source>
    <translation>Dark</translation>
  </message>
  <message>
    <source>У всех избранных треков есть жанр.</source>
    <translation>All favorites have a genre.</translation>
  </message>
  <message>
    <source>У выбранных треков жанр уже пуст</source>
    <translation>The selected tracks have no genre already</translation>
  </message>
  <message>
    <source>У выбранных треков комментарий уже пуст</source>
    <translation>The selected tracks have no comment already</translation>
  </message>
  <message>
    <source>Убрано из анализа: %d</source>
    <translation>Removed from analysis: %d</translation>
  </message>
  <message>
    <source>Убрано из избранного: %d</source>
    <translation>Removed from favorites: %d</translation>
  </message>
  <message>
    <source>Убрано из обложек: %d</source>
    <translation>Removed from covers: %d</translation>
  </message>
  <message>
    <source>Убрано из плейлиста: %d</source>
    <translation>Removed from playlist: %d</translation>
  </message>
  <message>
    <source>Убрано из тональности: %d</source>
    <translation>Removed from key: %d</translation>
  </message>
  <message>
    <source>Убрать</source>
    <translation>Remove</translation>
  </message>
  <message>
    <source>Убрать выбранные треки?</source>
    <translation type="vanished">Remove selected tracks?</translation>
  </message>
  <message>
    <source>Убрать из анализа</source>
    <translation>Remove from analysis</translation>
  </message>
  <message>
    <source>Убрать из избранного</source>
    <translation>Remove from favorites</translation>
  </message>
  <message>
    <source>Убрать из обложек</source>
    <translation>Remove from covers</translation>
  </message>
  <message>
    <source>Убрать из плейлиста</source>
    <translation>Remove from playlist</translation>
  </message>
  <message>
    <source>Убрать из раздела</source>
    <translation>Remove from section</translation>
  </message>
  <message>
    <source>Убрать из списка</source>
    <translation type="vanished">Remove from list</translation>
  </message>
  <message>
    <source>Уверенность</source>
    <translation>Confidence</translation>
  </message>
  <message>
    <source>Уверенность: %d %</source>
    <translation>Confidence: %d%</translation>
  </message>
  <message>
    <source>Удалить из тональности</source>
    <translation>Remove from Key</translation>
  </message>
  <message>
    <source>Удвоить темп</source>
    <translation>Double the Tempo</translation>
  </message>
  <message>
    <source>Уменьшить темп вдвое</source>
    <translation>Halve the Tempo</translation>
  </message>
  <message>
    <source>Устройство вывода</source>
    <translation>Output device</translation>
  </message>
  <message>
    <source>Файл %@ был перезаписан, но новая обложка не прошла проверку.</source>
    <translation>The file %@ was rewritten, but its new artwork did not pass verification.</translation>
  </message>
  <message>
    <source>Файл %@ не найден.</source>
    <translation>The file %@ was not found.</translation>
  </message>
  <message>
    <source>Файл %@ не перемещён: недостаточно места.</source>
    <translation>The file %@ was not moved: there is not enough space.</translation>
  </message>
  <message>
    <source>Файл %@ не перемещён: том доступен только для чтения.</source>
    <translation>The file %@ was not moved: the volume is read-only.</translation>
  </message>
  <message>
    <source>Файл %@ не сохранён: недостаточно места.</source>
    <translation>The file %@ was not saved: there is not enough space.</translation>
  </message>
  <message>
    <source>Файл %@ не сохранён: том доступен только для чтения.</source>
    <translation>The file %@ was not saved: the volume is read-only.</translation>
  </message>
  <message>
    <source>Файл %@ повреждён или прочитан не полностью.</source>
    <translation>The file %@ is damaged or could not be read completely.</translation>
  </message>
  <message>
    <source>Файл открывается…</source>
    <translation>The file is being opened…</translation>
  </message>
  <message>
    <source>Файлов не найдено при запуске: %d</source>
    <translation>Files not found at the start: %d</translation>
  </message>
  <message>
    <source>Файлов с такими правками: %d. Их можно дописать сейчас или оставить до следующего запуска: тогда Velmora запишет их сама.</source>
    <translation>Files with such edits: %d. They can be written now, or kept until the next start: Velmora writes them then.</translation>
  </message>
  <message>
    <source>Файлы будут перемещены в Корзину macOS. Количество: %d.</source>
    <translation type="vanished">The files will be moved to the macOS Trash. Count: %d.</translation>
  </message>
  <message>
    <source>Файлы ещё записываются</source>
    <translation>Files are still being written</translation>
  </message>
  <message>
    <source>Файлы не найдены, в списках нет: %d</source>
    <translation>Files not found, not in the lists: %d</translation>
  </message>
  <message>
    <source>Фиолетовый</source>
    <translation>Violet</translation>
  </message>
  <message>
    <source>Формат</source>
    <translation>Format</translation>
  </message>
  <message>
    <source>Цвет волны</source>
    <translation>Waveform colour</translation>
  </message>
  <message>
    <source>Чтение тегов: %d из %d</source>
    <translation>Reading tags: %d of %d</translation>
  </message>
  <message>
    <source>Что оставить в файлах при сохранении?</source>
    <translation>What should saving keep in files?</translation>
  </message>
  <message>
    <source>Эти треки нельзя удалить из «Обложек», пока они находятся в «Избранном». Сначала уберите их из «Избранного».</source>
    <translation>These tracks cannot be removed from Covers while they are in Favorites. Remove them from Favorites first.</translation>
  </message>
  <message>
    <source>Этот трек нельзя удалить из «Обложек», пока он находится в «Избранном». Сначала уберите его из «Избранного».</source>
    <translation>This track cannot be removed from Covers while it is in Favorites. Remove it from Favorites first.</translation>
  </message>
  <message>
    <source>Язык</source>
    <translation>Language</translation>
  </message>
  <message>
    <source>без обложки %d</source>
    <translation>without a cover %d</translation>
  </message>
  <message>
    <source>без результата %d</source>
    <translation>%d without result</translation>
  </message>
  <message>
    <source>в избранном %d</source>
    <translation>%d in Favorites</translation>
  </message>
  <message>
    <source>в очереди %d</source>
    <translation>%d queued</translation>
  </message>
  <message>
    <source>диск не принял запись</source>
    <translation>the disk refused to write</translation>
  </message>
  <message>
    <source>до</source>
    <translation>C</translation>
  </message>
  <message>
    <source>до-диез</source>
    <translation>C sharp</translation>
  </message>
  <message>
    <source>ещё не определена</source>
    <translation>not detected yet</translation>
  </message>
  <message>
    <source>из имени</source>
    <translation>from name</translation>
  </message>
  <message>
    <source>ля</source>
    <translation>A</translation>
  </message>
  <message>
    <source>ля-бемоль</source>
    <translation>A flat</translation>
  </message>
  <message>
    <source>ми</source>
    <translation>E</translation>
  </message>
  <message>
    <source>ми-бемоль</source>
    <translation>E flat</translation>
  </message>
  <message>
    <source>на диске нет места</source>
    <translation>the disk is full</translation>
  </message>
  <message>
    <source>не записывается</source>
    <translation>not written</translation>
  </message>
  <message>
    <source>нет прав на запись</source>
    <translation>no permission to write</translation>
  </message>
  <message>
    <source>около %@</source>
    <translation>about %@</translation>
  </message>
  <message>
    <source>определено %d</source>
    <translation>%d detected</translation>
  </message>
  <message>
    <source>пауза</source>
    <translation>paused</translation>
  </message>
  <message>
    <source>правки ещё не в файлах: %d</source>
    <translation>edits not in their files yet: %d</translation>
  </message>
  <message>
    <source>ре</source>
    <translation>D</translation>
  </message>
  <message>
    <source>ре-бемоль</source>
    <translation>D flat</translation>
  </message>
  <message>
    <source>си</source>
    <translation>B</translation>
  </message>
  <message>
    <source>си-бемоль</source>
    <translation>B flat</translation>
  </message>
  <message>
    <source>соль</source>
    <translation>G</translation>
  </message>
  <message>
    <source>соль-диез</source>
    <translation>G sharp</translation>
  </message>
  <message>
    <source>только без жанра</source>
    <translation>without genre only</translation>
  </message>
  <message>
    <source>только жанр «%@»</source>
    <translation>genre “%@” only</translation>
  </message>
  <message>
    <source>фа</source>
    <translation>F</translation>
  </message>
  <message>
    <source>фа-диез</source>
    <translation>F sharp</translation>
  </message>
</context>
</TS>
