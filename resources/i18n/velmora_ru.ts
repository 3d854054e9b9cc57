<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="ru">
<context>
  <name>Velmora</name>
  <message numerus="yes">
    <source>%n мест для поиска</source>
    <translation>
      <numerusform>%n место для поиска</numerusform>
      <numerusform>%n места для поиска</numerusform>
      <numerusform>%n мест для поиска</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n папок</source>
    <translation>
      <numerusform>%n папка</numerusform>
      <numerusform>%n папки</numerusform>
      <numerusform>%n папок</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n треков</source>
    <translation>
      <numerusform>%n трек</numerusform>
      <numerusform>%n трека</numerusform>
      <numerusform>%n треков</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n файлов</source>
    <translation>
      <numerusform>%n файл</numerusform>
      <numerusform>%n файла</numerusform>
      <numerusform>%n файлов</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>%n центов</source>
    <translation>
      <numerusform>%n цент</numerusform>
      <numerusform>%n цента</numerusform>
      <numerusform>%n центов</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>Сохранение удалит %n других полей</source>
    <translation>
      <numerusform>Сохранение удалит %n другое поле</numerusform>
      <numerusform>Сохранение удалит %n других поля</numerusform>
      <numerusform>Сохранение удалит %n других полей</numerusform>
    </translation>
  </message>
  <message numerus="yes">
    <source>Сохранение удалит обложку и %n других полей</source>
    <translation>
      <numerusform>Сохранение удалит обложку и %n другое поле</numerusform>
      <numerusform>Сохранение удалит обложку и %n других поля</numerusform>
      <numerusform>Сохранение удалит обложку и %n других полей</numerusform>
    </translation>
  </message>
</context>
</TS>
